/// What every benchmark needs: a place for its files, the time that something takes, a median.
#pragma once

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <functional>
#include <vector>

namespace nivor::bench {

/// A folder below the current one: where the program's files go is what is to be measured.
inline std::filesystem::path workFolder()
{
    const std::filesystem::path folder = std::filesystem::current_path() / "bench-files";
    std::filesystem::create_directories(folder);
    return folder;
}

inline double secondsOf(const std::function<void()>& work)
{
    const auto began = std::chrono::steady_clock::now();
    work();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - began).count();
}

/// `values` must not be empty.
inline double median(std::vector<double> values)
{
    std::sort(values.begin(), values.end());
    return values[values.size() / 2];
}

}  // namespace nivor::bench
