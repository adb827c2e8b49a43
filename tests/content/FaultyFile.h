/// A file on a disk that fails at one step, as real ones do.
#pragma once

#include "content/CopyTargets.h"
#include "ptp/FileHandle.h"

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <map>
#include <memory>
#include <string>
#include <thread>
#include <utility>

namespace nivor::test {

struct DiskFault {
    enum class Step : std::uint8_t { None, Create, Reserve, Write, Synchronize, Close };

    Step step = Step::None;
    int error = 0;
    std::uint64_t writtenBefore = 0;  ///< bytes that the disk still takes; for `Write`
    std::chrono::milliseconds perWrite{};
};

/// Really creates its file; what it takes before the fault is in it.
class FaultyFile : public FileHandle {
public:
    FaultyFile(const std::filesystem::path& path, DiskFault fault)
        : FileHandle(fault.step == DiskFault::Step::Create ? unopened(fault.error, path)
                                                           : create(path))
        , fault_(fault)
    {
    }

protected:
    ssize_t writeSome(ByteView bytes) override
    {
        std::this_thread::sleep_for(fault_.perWrite);
        if (fault_.step != DiskFault::Step::Write)
            return FileHandle::writeSome(bytes);
        if (fault_.writtenBefore == 0)
            return refuse();
        const std::size_t room = std::min<std::uint64_t>(bytes.size(), fault_.writtenBefore);
        fault_.writtenBefore -= room;
        return FileHandle::writeSome(bytes.first(room));
    }

    int reserveOnce(std::uint64_t size) override
    {
        return fault_.step == DiskFault::Step::Reserve ? refuse() : FileHandle::reserveOnce(size);
    }

    int synchronizeOnce() override
    {
        return fault_.step == DiskFault::Step::Synchronize ? refuse()
                                                           : FileHandle::synchronizeOnce();
    }

    int closeOnce() override
    {
        const int result = FileHandle::closeOnce();
        return fault_.step == DiskFault::Step::Close ? refuse() : result;
    }

private:
    int refuse() const
    {
        errno = fault_.error;
        return -1;
    }

    DiskFault fault_;
};

/// Makes the files of a run, each with the fault that stands under its name, if one does.
inline CopyTargets::CreateFile createWithFaults(std::map<std::string, DiskFault> faults)
{
    return [faults = std::move(faults)](const std::filesystem::path& path) {
        const auto fault = faults.find(path.filename().string());
        return std::make_shared<FaultyFile>(path,
                                            fault == faults.end() ? DiskFault{} : fault->second);
    };
}

}  // namespace nivor::test
