#include "Seeds.h"

#include "SeedCamera.h"
#include "codes/ObjectPropCode.h"
#include "foundation/ByteWriter.h"
#include "logging/FileContents.h"
#include "logging/RollingLogger.h"
#include "simulator/PtpDatasets.h"
#include "support/TemporaryDirectory.h"

#include <QBuffer>
#include <QImage>

#include <array>
#include <chrono>
#include <string>

namespace nivor::fuzz {
namespace {

void append(ByteBuffer& bytes, ByteView more)
{
    bytes.insert(bytes.end(), more.begin(), more.end());
}

void append(ByteBuffer& bytes, std::string_view text)
{
    bytes.insert(bytes.end(), text.begin(), text.end());
}

/// A run whose length the input says itself (`FuzzedInput::run`).
void appendRun(ByteBuffer& bytes, ByteView run)
{
    bytes.push_back(static_cast<std::uint8_t>(run.size()));
    append(bytes, run);
}

/// What the camera answers to each of its objects' handles, data only.
std::vector<Seed> answersByObject(OperationCode operation, std::vector<std::uint32_t> more)
{
    SeedCamera camera;
    std::vector<Seed> seeds;
    for (const std::uint32_t handle : camera.handles()) {
        std::vector<std::uint32_t> parameters{handle};
        parameters.insert(parameters.end(), more.begin(), more.end());
        seeds.push_back(
            {"Object" + std::to_string(handle), camera.answer(operation, parameters).front()});
    }
    return seeds;
}

}  // namespace

std::vector<Seed> containerSeeds()
{
    SeedCamera camera;
    ByteBuffer stream;
    std::vector<Seed> seeds{{"Response", camera.answer(OperationCode::CloseSession).back()}};
    for (const std::uint32_t handle : camera.handles()) {
        for (const ByteBuffer& transfer : camera.answer(OperationCode::GetObject, {handle}))
            append(stream, transfer);
    }
    // 64 bytes a packet; pieces of 5, 64 and 1 bytes; no short packets.
    ByteBuffer input{3, 2, 5, 64, 1, 0};
    append(input, stream);
    seeds.push_back({"Objects", stream});
    seeds.push_back({"ObjectsInPieces", std::move(input)});
    return seeds;
}

std::vector<Seed> objectInfoSeeds()
{
    return answersByObject(OperationCode::GetObjectInfo, {});
}

std::vector<Seed> propValueSeeds()
{
    return answersByObject(OperationCode::GetObjectPropValue,
                           {static_cast<std::uint32_t>(ObjectPropCode::ObjectSize)});
}

std::vector<Seed> stringSeeds()
{
    std::vector<Seed> seeds{{"Empty"}, {"Name"}, {"Date"}, {"Longest"}, {"Array"}, {"BareDate"}};
    appendPtpString(seeds[0].bytes, u"");
    appendPtpString(seeds[1].bytes, u"DSC_0001.JPG");
    appendPtpString(seeds[2].bytes, u"20240229T235959");
    appendPtpString(seeds[3].bytes, std::u16string(254, u'x'));
    appendLittleEndian(seeds[4].bytes, std::uint32_t{3});
    append(seeds[4].bytes, std::array<std::uint8_t, 6>{1, 0, 2, 0, 0xFF, 0xFF});
    append(seeds[5].bytes, "20240331T023000");
    return seeds;
}

std::vector<Seed> thumbnailSeeds()
{
    QImage picture(16, 12, QImage::Format_RGB32);
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x)
            picture.setPixel(x, y, qRgb(16 * x, 20 * y, 128));
    }
    std::vector<Seed> seeds;
    // What can't be written here is left out.
    for (const char* const format : {"jpeg", "png", "bmp", "tiff"}) {
        for (const bool isGrey : {false, true}) {
            QByteArray file;
            QBuffer buffer(&file);
            const QImage image =
                isGrey ? picture.convertToFormat(QImage::Format_Indexed8) : picture;
            if (image.save(&buffer, format))
                seeds.push_back({std::string(format) + (isGrey ? "Indexed" : "Colour"),
                                 ByteBuffer(file.begin(), file.end())});
        }
    }
    // One black pixel: screen, palette of two, image, two codes of LZW, end.
    Seed gif{"gif"};
    append(gif.bytes, "GIF89a");
    append(gif.bytes,
           std::array<std::uint8_t, 29>{1, 0, 1, 0, 0x80, 0, 0, 0, 0, 0, 0xFF, 0xFF, 0xFF, 0x2C, 0,
                                        0, 0, 0, 1, 0,    1, 0, 0, 2, 2, 0x44, 1,    0,    0x3B});
    seeds.push_back(std::move(gif));
    return seeds;
}

std::vector<Seed> fileNameSeeds()
{
    const std::array<std::u16string, 8> names{
        u"DSC_0001.JPG",       u"..",
        u"a/b\\c:d",           u"README",
        u".profile",           std::u16string(250, u'\u5199') + u".jpeg",
        u"\xD83D half \xDCF7", u"\x1B[2J\x202E.JPG"};
    ByteBuffer all;
    std::vector<Seed> seeds;
    for (std::size_t i = 0; i < names.size(); ++i) {
        // A new name, no link in the way, as many lost races as the name's place says.
        ByteBuffer one{static_cast<std::uint8_t>((i % 4) << 2U)};
        one.push_back(static_cast<std::uint8_t>(names[i].size()));
        for (const char16_t unit : names[i])
            appendLittleEndian(one, static_cast<std::uint16_t>(unit));
        appendLittleEndian(one, std::uint32_t{0});
        append(all, one);
        seeds.push_back({"Name" + std::to_string(i), std::move(one)});
    }
    // Once more the first name, with a link in the way, and counted.
    append(all, std::array<std::uint8_t, 6>{0x13, 0, 9, 0, 0, 0});
    seeds.push_back({"AllNames", std::move(all)});
    return seeds;
}

std::vector<Seed> logSeeds()
{
    const test::TemporaryDirectory directory;
    std::chrono::sys_seconds now(std::chrono::seconds(1'700'000'000));
    RollingLogger logger([&] { return now; });
    logger.setLogBaseName("Seed");
    logger.setSaveDirectory(directory.path());
    logger.writeToFile("PTPCommunication", "connect:", "Connect");
    now += std::chrono::hours(1);
    logger.writeToFile("PTPCommunication", "disconnect", "line one\nline two");
    const std::string log = contentsOfFile(logger.targetLogName().string()).value_or("");

    std::vector<Seed> seeds;
    for (std::uint8_t zone = 0; zone < 3; ++zone) {
        // The second file has the older records of the first.
        ByteBuffer input{zone, 0, 0, 0, 0x70};
        appendLittleEndian(input, static_cast<std::uint16_t>(log.size()));
        append(input, log);
        appendLittleEndian(input, static_cast<std::uint16_t>(log.size() / 2));
        append(input, std::string_view(log).substr(0, log.size() / 2));
        append(input, "2024-03-31T02:30:00Z");
        seeds.push_back({"Zone" + std::to_string(zone), std::move(input)});
    }
    return seeds;
}

std::vector<Seed> simulatorSeeds()
{
    Seed session{"Session"};
    const auto ask = [&](OperationCode operation, const std::vector<std::uint32_t>& parameters) {
        session.bytes.push_back(0);
        appendRun(session.bytes, SeedCamera::command(operation, parameters));
    };
    ask(OperationCode::GetDeviceInfo, {});
    ask(OperationCode::OpenSession, {1});
    ask(OperationCode::GetStorageIDs, {});
    ask(OperationCode::GetStorageInfo, {0x00010001});
    ask(OperationCode::GetNumObjects, {0xFFFFFFFF, 0, 0});
    ask(OperationCode::GetObjectHandles, {0xFFFFFFFF, 0, 0xFFFFFFFF});
    ask(OperationCode::GetObjectInfo, {3});
    ask(OperationCode::GetObject, {3});
    ask(OperationCode::GetThumb, {3});
    ask(OperationCode::GetObjectPropValue, {3, 0xDC04});
    ask(OperationCode::GetObject, {5});
    ask(OperationCode::DeleteObject, {2, 0});
    ask(OperationCode::CloseSession, {});

    // A command left unread, a Cancel Request for it, a status, and a small read.
    Seed cancel{"Cancel"};
    cancel.bytes.push_back(1);
    appendRun(cancel.bytes, SeedCamera::command(OperationCode::GetDeviceInfo));
    append(cancel.bytes, std::array<std::uint8_t, 10>{3, 6, 0x01, 0x40, 1, 0, 0, 0, 0, 1});
    append(cancel.bytes, std::array<std::uint8_t, 8>{3, 4, 0, 0, 0, 0, 1, 4});
    append(cancel.bytes, std::array<std::uint8_t, 3>{2, 64, 0});

    return {session, cancel, {"Command", SeedCamera::command(OperationCode::GetObject, {1})}};
}

std::vector<Seed> seedsOf(std::string_view target)
{
    struct Group {
        std::string_view target;
        std::vector<Seed> (*make)();
    };
    static constexpr std::array<Group, 9> groups{{{"FuzzContainer", &containerSeeds},
                                                  {"FuzzObjectInfo", &objectInfoSeeds},
                                                  {"FuzzPropValue", &propValueSeeds},
                                                  {"FuzzStrings", &stringSeeds},
                                                  {"FuzzThumbnail", &thumbnailSeeds},
                                                  {"FuzzEngine", &engineSeeds},
                                                  {"FuzzFileName", &fileNameSeeds},
                                                  {"FuzzLog", &logSeeds},
                                                  {"FuzzSimulator", &simulatorSeeds}}};
    for (const Group& group : groups) {
        if (group.target == target)
            return group.make();
    }
    return {};
}

}  // namespace nivor::fuzz
