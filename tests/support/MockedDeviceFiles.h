/// The mocked device files of this process, as its own open() and ioctl() find them.
#pragma once

#include "support/EmulatedUsbfs.h"

#include <cstddef>
#include <deque>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <sys/types.h>
#include <utility>

namespace nivor::test {

/// One per process. Any thread.
class MockedDeviceFiles {
public:
    static MockedDeviceFiles& instance();

    /// `path` is what programs open, `pipePath` the named pipe behind it.
    void add(const std::string& path, const std::string& pipePath,
             std::shared_ptr<EmulatedUsbfs> usbfs);
    void remove(const std::string& path);

    /// Lets go of the devices that have left; nobody may have one open any more.
    void forgetLeft();

    /// The kernel side of an open device file, or none for any other file.
    std::shared_ptr<EmulatedUsbfs> find(int descriptor);

    /// Counts an open(); the errno with which it has to fail, or 0.
    int opening(const char* path);

    std::size_t openCount(const std::string& path);
    void failNextOpen(const std::string& path, int error);

private:
    struct File {
        std::pair<dev_t, ino_t> identity;
        std::shared_ptr<EmulatedUsbfs> usbfs;
        std::size_t opens = 0;
        std::deque<int> failures;
    };

    std::mutex mutex_;
    std::map<std::string, File> files_;
};

}  // namespace nivor::test
