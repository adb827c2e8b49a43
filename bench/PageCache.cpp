#include "PageCache.h"

#include <algorithm>
#include <functional>
#include <vector>

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

namespace nivor::bench {
namespace {

void withFile(const std::filesystem::path& path,
              const std::function<void(int descriptor, std::uint64_t size)>& work)
{
    const int descriptor = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
    struct stat status { };
    if (descriptor < 0)
        return;
    if (::fstat(descriptor, &status) == 0 && S_ISREG(status.st_mode) && status.st_size > 0)
        work(descriptor, static_cast<std::uint64_t>(status.st_size));
    ::close(descriptor);
}

}  // namespace

void dropFromCache(const std::set<std::filesystem::path>& files)
{
    for (const std::filesystem::path& file : files) {
        withFile(file, [](int descriptor, std::uint64_t /*size*/) {
            // What has not reached the disk yet, as in a program just built, would stay.
            ::fsync(descriptor);
            ::posix_fadvise(descriptor, 0, 0, POSIX_FADV_DONTNEED);
        });
    }
}

CachedBytes cached(const std::set<std::filesystem::path>& files)
{
    CachedBytes sum;
    const auto page = static_cast<std::uint64_t>(::sysconf(_SC_PAGESIZE));
    for (const std::filesystem::path& file : files) {
        withFile(file, [&](int descriptor, std::uint64_t size) {
            void* const bytes = ::mmap(nullptr, size, PROT_READ, MAP_SHARED, descriptor, 0);
            if (bytes == MAP_FAILED)
                return;
            std::vector<unsigned char> pages((size + page - 1) / page);
            if (::mincore(bytes, size, pages.data()) == 0) {
                const auto resident =
                    std::count_if(pages.begin(), pages.end(),
                                  [](unsigned char state) { return (state & 1U) != 0; });
                sum.size += size;
                sum.resident += std::min(static_cast<std::uint64_t>(resident) * page, size);
            }
            ::munmap(bytes, size);
        });
    }
    return sum;
}

}  // namespace nivor::bench
