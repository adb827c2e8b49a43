#include "content/FileGlob.h"

#include <algorithm>
#include <string_view>
#include <vector>

namespace nivor {
namespace {

constexpr std::size_t none = std::u32string_view::npos;

/// The set that begins with the '[' at the front of `pattern`: whether `character` is in it.
/// `length` becomes that of the set in the pattern, 0 when it isn't closed.
bool matchesSet(std::u32string_view pattern, char32_t character, std::size_t& length)
{
    std::size_t at = 1;
    const bool negated = at < pattern.size() && (pattern[at] == U'!' || pattern[at] == U'^');
    if (negated)
        ++at;
    bool found = false;
    // A ']' directly at the start belongs to the set.
    for (bool isFirst = true; at < pattern.size() && (isFirst || pattern[at] != U']');
         isFirst = false) {
        const char32_t low = pattern[at];
        const bool isRange =
            at + 2 < pattern.size() && pattern[at + 1] == U'-' && pattern[at + 2] != U']';
        const char32_t high = isRange ? pattern[at + 2] : low;
        found = found || (low <= character && character <= high);
        at += isRange ? 3 : 1;
    }
    length = at < pattern.size() ? at + 1 : 0;
    return found != negated;
}

/// Whether the element at the front of `pattern` (not a '*') matches `character`; `length` becomes
/// its own.
bool matchesOne(std::u32string_view pattern, char32_t character, std::size_t& length)
{
    length = 1;
    if (pattern[0] == U'?')
        return true;
    if (pattern[0] == U'[') {
        const bool matches = matchesSet(pattern, character, length);
        if (length > 0)
            return matches;
        length = 1;
    }
    if (pattern[0] == U'\\' && pattern.size() > 1) {
        length = 2;
        return pattern[1] == character;
    }
    return pattern[0] == character;
}

/// The usual two-pointer match: only the last '*' is ever tried again.
bool matchesText(std::u32string_view pattern, std::u32string_view text)
{
    std::size_t inPattern = 0;
    std::size_t inText = 0;
    std::size_t afterStar = none;
    std::size_t starText = 0;
    while (inText < text.size()) {
        std::size_t length = 0;
        if (inPattern < pattern.size() && pattern[inPattern] == U'*') {
            afterStar = ++inPattern;
            starText = inText;
        } else if (inPattern < pattern.size()
                   && matchesOne(pattern.substr(inPattern), text[inText], length)) {
            inPattern += length;
            ++inText;
        } else if (afterStar != none) {
            inPattern = afterStar;
            inText = ++starText;
        } else {
            return false;
        }
    }
    while (inPattern < pattern.size() && pattern[inPattern] == U'*')
        ++inPattern;
    return inPattern == pattern.size();
}

/// The same over whole components, where "**" is the star.
bool matchesComponents(const std::vector<std::u32string_view>& pattern,
                       const std::vector<std::u32string_view>& path)
{
    std::size_t inPattern = 0;
    std::size_t inPath = 0;
    std::size_t afterStar = none;
    std::size_t starPath = 0;
    const std::u32string_view anyComponents = U"**";
    while (inPath < path.size()) {
        if (inPattern < pattern.size() && pattern[inPattern] == anyComponents) {
            afterStar = ++inPattern;
            starPath = inPath;
        } else if (inPattern < pattern.size() && matchesText(pattern[inPattern], path[inPath])) {
            ++inPattern;
            ++inPath;
        } else if (afterStar != none) {
            inPattern = afterStar;
            inPath = ++starPath;
        } else {
            return false;
        }
    }
    while (inPattern < pattern.size() && pattern[inPattern] == anyComponents)
        ++inPattern;
    return inPattern == pattern.size();
}

std::u32string charactersOf(const QString& text)
{
    return text.normalized(QString::NormalizationForm_C).toStdU32String();
}

/// The parts of `path` between its slashes, without empty ones.
std::vector<std::u32string_view> componentsOf(std::u32string_view path)
{
    std::vector<std::u32string_view> components;
    while (!path.empty()) {
        const std::u32string_view component = path.substr(0, path.find(U'/'));
        path.remove_prefix(std::min(component.size() + 1, path.size()));
        if (!component.empty())
            components.push_back(component);
    }
    return components;
}

}  // namespace

FileGlob::FileGlob(const QString& pattern)
    : pattern_(charactersOf(pattern))
{
}

bool FileGlob::matchesName(const QString& name) const
{
    return matchesText(pattern_, charactersOf(name));
}

bool FileGlob::matchesPath(const QString& path) const
{
    const std::u32string characters = charactersOf(path);
    return matchesComponents(componentsOf(pattern_), componentsOf(characters));
}

}  // namespace nivor
