#include "support/MockedDeviceFiles.h"

#include <cerrno>
#include <cstdarg>
#include <dlfcn.h>
#include <sys/stat.h>
#include <system_error>

namespace nivor::test {
namespace {

// Behind the path of a device that has left.
constexpr char left[] = " (left) ";

}  // namespace

MockedDeviceFiles& MockedDeviceFiles::instance()
{
    static MockedDeviceFiles files;
    return files;
}

void MockedDeviceFiles::add(const std::string& path, const std::string& pipePath,
                            std::shared_ptr<EmulatedUsbfs> usbfs)
{
    struct stat status { };
    if (::stat(pipePath.c_str(), &status) != 0)
        throw std::system_error(errno, std::generic_category(), pipePath);
    const std::lock_guard guard(mutex_);
    files_[path] = File{{status.st_dev, status.st_ino}, std::move(usbfs), 0, {}};
}

void MockedDeviceFiles::remove(const std::string& path)
{
    // Those who have it open still reach it, as with a device that has left.
    const std::lock_guard guard(mutex_);
    auto node = files_.extract(path);
    if (node.empty())
        return;
    const auto& [device, inode] = node.mapped().identity;
    node.key() = path + left + std::to_string(inode);
    files_.insert(std::move(node));
}

void MockedDeviceFiles::forgetLeft()
{
    const std::lock_guard guard(mutex_);
    std::erase_if(files_,
                  [](const auto& file) { return file.first.find(left) != file.first.npos; });
}

std::shared_ptr<EmulatedUsbfs> MockedDeviceFiles::find(int descriptor)
{
    struct stat status { };
    if (::fstat(descriptor, &status) != 0 || !S_ISFIFO(status.st_mode))
        return nullptr;
    const std::pair identity(status.st_dev, status.st_ino);
    const std::lock_guard guard(mutex_);
    for (const auto& [path, file] : files_) {
        if (file.identity == identity)
            return file.usbfs;
    }
    return nullptr;
}

int MockedDeviceFiles::opening(const char* path)
{
    const std::lock_guard guard(mutex_);
    const auto file = files_.find(path);
    if (file == files_.end())
        return 0;
    ++file->second.opens;
    auto& failures = file->second.failures;
    if (failures.empty())
        return 0;
    const int error = failures.front();
    failures.pop_front();
    return error;
}

std::size_t MockedDeviceFiles::openCount(const std::string& path)
{
    const std::lock_guard guard(mutex_);
    return files_[path].opens;
}

void MockedDeviceFiles::failNextOpen(const std::string& path, int error)
{
    const std::lock_guard guard(mutex_);
    files_[path].failures.push_back(error);
}

namespace {

template <typename Function> Function next(const char* name)
{
    return reinterpret_cast<Function>(dlsym(RTLD_NEXT, name));
}

}  // namespace

}  // namespace nivor::test

// libusb's calls come here first, because the program's own functions precede any library's; what
// is not for a mocked device file goes on to umockdev and from there to the C library.
extern "C" {

__attribute__((visibility("default"))) int ioctl(int descriptor, unsigned long request, ...)
{
    va_list arguments;
    va_start(arguments, request);
    void* const argument = va_arg(arguments, void*);
    va_end(arguments);
    if (_IOC_TYPE(request) == 'U') {
        if (const auto usbfs = nivor::test::MockedDeviceFiles::instance().find(descriptor)) {
            const int result = usbfs->ioctl(request, argument);
            if (result >= 0)
                return result;
            errno = -result;
            return -1;
        }
    }
    static const auto real = nivor::test::next<int (*)(int, unsigned long, ...)>("ioctl");
    return real(descriptor, request, argument);
}

__attribute__((visibility("default"))) int __open_2(const char* path, int flags)
{
    if (const int error = nivor::test::MockedDeviceFiles::instance().opening(path); error != 0) {
        errno = error;
        return -1;
    }
    static const auto real = nivor::test::next<int (*)(const char*, int)>("__open_2");
    return real(path, flags);
}
}
