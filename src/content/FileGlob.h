/// Wildcards in the names of files, as shells have them.
#pragma once

#include <QString>

#include <string>

namespace nivor {

/// '*' stands for any characters, '?' for one, "[a-z]" and "[!a-z]" for one of a set, and '\'
/// takes the next character literally; a '[' that nothing closes is a plain one. Upper and lower
/// case differ; the two Unicode ways to write an accented character don't. The time is bounded
/// by the product of both lengths, whatever the pattern.
class FileGlob {
public:
    explicit FileGlob(const QString& pattern);

    /// Whether the whole of `name` matches. None of the wildcards is special about '/'.
    [[nodiscard]] bool matchesName(const QString& name) const;

    /// Whether the whole of `path` matches: wildcards stay within a component, except that a
    /// component "**" stands for any number of components.
    [[nodiscard]] bool matchesPath(const QString& path) const;

private:
    std::u32string pattern_;  ///< characters rather than units, so that '?' takes a whole one
};

}  // namespace nivor
