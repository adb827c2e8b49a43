#include "foundation/SystemConsole.h"

#include <cstdio>
#include <string>

namespace nivor {

void writeToSystemConsole(std::string_view line)
{
    // One call, one write: stderr is unbuffered and locked for the length of the call.
    std::string text(line);
    text += '\n';
    // When this fails, there is no other place to say so.
    static_cast<void>(std::fwrite(text.data(), 1, text.size(), stderr));
}

}  // namespace nivor
