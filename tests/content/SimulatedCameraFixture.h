/// An engine connected to a simulated camera, with its log and a destination folder of its own.
#pragma once

#include "content/ContentLoader.h"
#include "datasets/ObjectInfoData.h"
#include "datasets/TrimmingNullCharacters.h"
#include "foundation/ByteWriter.h"
#include "ptp/PTPCommunication.h"
#include "simulator/MemoryCard.h"
#include "simulator/PatternContent.h"
#include "simulator/SimulatedHost.h"
#include "support/LogRecords.h"
#include "support/TemporaryDirectory.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fstream>
#include <iterator>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace nivor::test {

/// The names of objects, for comparing.
inline std::vector<std::string> namesOf(const ObjectList& objects)
{
    std::vector<std::string> names;
    for (const auto& object : objects)
        names.push_back(NVX_stringByTrimmingNullCharacters(object->fileName()).toStdString());
    return names;
}

inline ByteBuffer bytesOf(const std::filesystem::path& path)
{
    std::ifstream file(path, std::ios::binary);
    const std::istreambuf_iterator<char> begin(file);
    return {begin, std::istreambuf_iterator<char>()};
}

/// Whether the file holds the pattern of the object with that handle, and nothing else.
inline bool holdsObject(const std::filesystem::path& path, std::uint32_t handle, std::uint64_t size)
{
    const ByteBuffer bytes = bytesOf(path);
    return bytes.size() == size && PatternContent(handle).matches(0, bytes);
}

inline void writeText(const std::filesystem::path& path, const std::string& text)
{
    std::ofstream(path, std::ios::binary) << text;
}

/// Answers a command with a data phase of these bytes and OK.
inline fault::RawAnswer answerWith(const ByteBuffer& payload)
{
    ByteBuffer data;
    appendLittleEndian(data, static_cast<std::uint32_t>(12 + payload.size()));
    appendLittleEndian(data, std::uint16_t{2});
    appendLittleEndian(data, std::uint16_t{0});
    appendLittleEndian(data, std::uint32_t{0});
    data.insert(data.end(), payload.begin(), payload.end());
    ByteBuffer response;
    appendLittleEndian(response, std::uint32_t{12});
    appendLittleEndian(response, std::uint16_t{3});
    appendLittleEndian(response, std::uint16_t{0x2001});
    appendLittleEndian(response, std::uint32_t{0});
    return {{data, response}};
}

/// The same with an array of 32-bit elements; `announced` elements are promised.
inline fault::RawAnswer answerWithArray(const std::vector<std::uint32_t>& elements,
                                        std::uint32_t announced)
{
    ByteBuffer payload;
    appendLittleEndian(payload, announced);
    for (const std::uint32_t element : elements)
        appendLittleEndian(payload, element);
    return answerWith(payload);
}

inline fault::RawAnswer answerWithArray(const std::vector<std::uint32_t>& elements)
{
    return answerWithArray(elements, static_cast<std::uint32_t>(elements.size()));
}

/// A description too short to be read: fails at once, where a refusal takes a time-out.
inline fault::RawAnswer damagedAnswer()
{
    return answerWith({1, 2, 3, 4});
}

class SimulatedCameraFixture : public ::testing::Test {
protected:
    void connect(CameraSettings settings = {})
    {
        camera = std::make_shared<SimulatedCamera>(card, std::move(settings));
        host->attach(camera);
        ASSERT_TRUE(engine.connect(anyVendorID));
        ASSERT_TRUE(engine.connected());
    }

    void connectWith(FaultPlan faults) { connect({.faults = std::move(faults)}); }

    ContentLoader::Result load(ContentLoader::Options options = {})
    {
        return ContentLoader(engine, options).load();
    }

    LogFixture log;
    TemporaryDirectory destination;
    std::shared_ptr<MemoryCard> card = std::make_shared<MemoryCard>();
    std::shared_ptr<SimulatedHost> host = std::make_shared<SimulatedHost>();
    std::shared_ptr<SimulatedCamera> camera;
    PTPCommunication engine{{.host = host, .logger = &log.logger(), .agentPause = {}}};
};

}  // namespace nivor::test
