/// The log's two words for how an operation ended.
#pragma once

namespace nivor {

constexpr const char* resultText(bool success)
{
    return success ? "success" : "fail";
}

}  // namespace nivor
