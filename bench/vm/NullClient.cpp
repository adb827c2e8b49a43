// A client that does nothing but what a listing and a read can't do without: what the bus, the
// kernel and libusb alone take.
//
// usage: nivor-null-client list
//        nivor-null-client read [--into FILE] DEPTHxKIB…    (1x512: synchronous reads of 512 KiB)
//
// Prints a line "NAME|VALUE|UNIT" for each figure. What comes before the first request, and the
// session, are not part of it.

#include "BareCamera.h"
#include "Effort.h"
#include "ReadingWays.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <unordered_set>
#include <vector>

namespace {

using namespace nivor::bench;

constexpr std::uint16_t getStorageIDs = 0x1004;
constexpr std::uint16_t getObjectHandles = 0x1007;
constexpr std::uint16_t getObjectInfo = 0x1008;

constexpr std::uint16_t associationFormat = 0x3001;

// Offsets of the dataset's fields (ISO 15740, 5.3.1).
constexpr std::size_t formatOffset = 4;
constexpr std::size_t sizeOffset = 8;
constexpr std::size_t parentOffset = 38;
constexpr std::size_t parentEnd = 42;

struct Object {
    std::uint32_t handle;
    std::uint32_t parent;
    std::uint32_t size;
    bool isFolder;
};

/// The requests of the program's listing, in its order.
class Listing {
public:
    explicit Listing(BareCamera& camera)
        : camera_(camera)
    {
        const auto storages = camera_.ask(getStorageIDs, {});
        if (storages.size() < 2 * sizeof(std::uint32_t))
            giveUp("no storage", 0);
        storage_ = u32At(storages, sizeof(std::uint32_t));
        readObjects(handlesIn(0));
        if (!namesContents())
            lookIntoFolders();
    }

    [[nodiscard]] const std::vector<Object>& objects() const { return objects_; }

private:
    std::vector<std::uint32_t> handlesIn(std::uint32_t folder)
    {
        const std::array<std::uint32_t, 3> parameters{storage_, 0, folder};
        const auto data = camera_.ask(getObjectHandles, parameters);
        std::vector<std::uint32_t> fresh;
        const std::uint32_t count = u32At(data, 0);
        for (std::size_t i = 1; i <= count && (i + 1) * sizeof(std::uint32_t) <= data.size(); ++i) {
            const std::uint32_t handle = u32At(data, i * sizeof(std::uint32_t));
            if (known_.insert(handle).second)
                fresh.push_back(handle);
        }
        std::sort(fresh.begin(), fresh.end());
        return fresh;
    }

    void readObjects(const std::vector<std::uint32_t>& handles)
    {
        for (const std::uint32_t handle : handles) {
            const auto info = camera_.ask(getObjectInfo, {&handle, 1});
            if (info.size() < parentEnd)
                giveUp("not an ObjectInfo", static_cast<int>(info.size()));
            objects_.push_back({.handle = handle,
                                .parent = u32At(info, parentOffset),
                                .size = u32At(info, sizeOffset),
                                .isFolder = u16At(info, formatOffset) == associationFormat});
        }
    }

    [[nodiscard]] bool namesContents() const
    {
        std::unordered_set<std::uint32_t> folders;
        for (const Object& object : objects_) {
            if (object.isFolder)
                folders.insert(object.handle);
        }
        return std::any_of(objects_.begin(), objects_.end(), [&folders](const Object& object) {
            return folders.contains(object.parent);
        });
    }

    void lookIntoFolders()
    {
        // The list grows with what the folders hold: level by level, as it should be.
        for (std::size_t i = 0; i < objects_.size(); ++i) {
            if (objects_[i].isFolder)
                readObjects(handlesIn(objects_[i].handle));
        }
    }

    BareCamera& camera_;
    std::uint32_t storage_ = 0;
    std::unordered_set<std::uint32_t> known_;
    std::vector<Object> objects_;
};

void list(BareCamera& camera)
{
    const Effort effort;
    const Listing listing(camera);
    const double seconds = effort.seconds();
    std::printf("null client|%.2f|objects/s\n",
                static_cast<double>(listing.objects().size()) / seconds);
    effort.tell(listing.objects().size(), "objects");
}

/// `path`: where the object is written to each time, until it is on the disk; empty: nowhere.
void read(BareCamera& camera, std::span<const std::string> ways, const std::string& path)
{
    const Listing listing(camera);
    const auto largest =
        std::max_element(listing.objects().begin(), listing.objects().end(),
                         [](const Object& a, const Object& b) { return a.size < b.size; });
    if (largest == listing.objects().end())
        giveUp("the camera is empty", 0);
    for (const std::string& text : ways) {
        const ReadingWay way = ReadingWay::parse(text);
        ::unlink(path.c_str());
        const Effort effort;
        const int file = path.empty()
            ? -1
            : ::open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0666);
        if (!path.empty() && file < 0)
            giveUp("no file to write to", errno);
        const std::uint64_t bytes = readObject(camera, largest->handle, way, file);
        if (file >= 0 && (::fsync(file) != 0 || ::close(file) != 0))
            giveUp("the file is not on the disk", errno);
        const double seconds = effort.seconds();
        std::printf("%s%s|%.3f|MB/s\n", way.text().c_str(), path.empty() ? "" : ", written",
                    static_cast<double>(bytes) / seconds / 1e6);
        effort.tell(bytes, "bytes");
    }
}

}  // namespace

int main(int argc, char* argv[])
{
    const std::vector<std::string> words(argv + 1, argv + argc);
    const bool isList = words.size() == 1 && words[0] == "list";
    const bool isInto = words.size() > 3 && words[1] == "--into";
    if (!isList && (words.size() < 2 || words[0] != "read")) {
        std::fputs("usage: nivor-null-client list | read [--into FILE] DEPTHxKIB…\n", stderr);
        return 2;
    }
    BareCamera camera;
    if (isList)
        list(camera);
    else
        read(camera, std::span(words).subspan(isInto ? 3 : 1), isInto ? words[2] : std::string());
    return EXIT_SUCCESS;
}
