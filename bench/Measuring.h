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

/// The time of one turn in seconds, `repetitions` times, each the mean of `turns`; the first turns,
/// which bring code and memory into play, don't count.
inline std::vector<double> secondsEach(std::size_t repetitions, std::size_t turns,
                                       const std::function<void()>& turn)
{
    std::vector<double> values;
    for (std::size_t i = 0; i <= repetitions; ++i) {
        const double all = secondsOf([&] {
            for (std::size_t j = 0; j < turns; ++j)
                turn();
        });
        if (i > 0)
            values.push_back(all / static_cast<double>(turns));
    }
    return values;
}

inline std::vector<double> scaled(std::vector<double> values, double factor)
{
    for (double& value : values)
        value *= factor;
    return values;
}

/// `amount` for each of the times: a rate.
inline std::vector<double> perSecond(double amount, std::vector<double> seconds)
{
    for (double& value : seconds)
        value = amount / value;
    return seconds;
}

/// `values` must not be empty.
inline double median(std::vector<double> values)
{
    std::sort(values.begin(), values.end());
    return values[values.size() / 2];
}

}  // namespace nivor::bench
