/// The errors that are raised rather than answered: bugs, ranges and the local disk.
#pragma once

#include <stdexcept>
#include <string>
#include <string_view>
#include <system_error>

namespace nivor {

/// An abstract operation was called on its base class: a bug in this program.
class InternalInconsistencyError : public std::logic_error {
public:
    using std::logic_error::logic_error;

    /// The error of an operation that a subclass has to override.
    static InternalInconsistencyError mustOverride(std::string_view selector)
    {
        return InternalInconsistencyError("Must override " + std::string(selector)
                                          + " in your subclass");
    }
};

/// A byte container was read past its end.
class RangeError : public std::out_of_range {
public:
    using std::out_of_range::out_of_range;
};

/// The local file system refused an operation; `code()` holds its errno.
class FileError : public std::system_error {
public:
    FileError(int errnoValue, const std::string& what)
        : std::system_error(errnoValue, std::generic_category(), what)
    {
    }
};

}  // namespace nivor
