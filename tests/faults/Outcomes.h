/// Words for the table of faults.
#pragma once

#include "faults/Fault.h"

#include <algorithm>
#include <cstddef>
#include <utility>

namespace nivor::test {

inline constexpr Content whole{};
inline constexpr Content nothing{.own = 0};
inline constexpr Content unknownContent{.isKnown = false};

inline Content prefix(std::size_t own, std::size_t foreign = 0)
{
    return {.own = own, .foreign = foreign};
}

/// What the kernel had and had not handed over when the camera left is lost.
inline Content atMost(std::size_t own)
{
    return {.own = own, .mayBeLess = true};
}

inline Outcome yes(Content content = whole, std::uint16_t responseCode = 0x2001)
{
    return {.responseCode = responseCode, .content = content};
}

/// Fails at once.
inline Outcome no(std::uint16_t responseCode, Content content = nothing)
{
    return {.ending = Ending::No, .responseCode = responseCode, .content = content};
}

/// Fails when the time-out has run out.
inline Outcome timesOut(std::uint16_t responseCode, Content content = nothing)
{
    return {.ending = Ending::No,
            .responseCode = responseCode,
            .wait = Wait::Timeout,
            .content = content};
}

inline Outcome raises(std::uint16_t responseCode = 0x2001)
{
    return {.ending = Ending::Raises, .responseCode = responseCode};
}

inline Outcome afterAWait(Outcome outcome)
{
    outcome.wait = Wait::Some;
    return outcome;
}

/// What follows on the same connection reads what this left.
inline Outcome leavingSomething(Outcome outcome)
{
    outcome.nextIsSound = false;
    return outcome;
}

inline Outcome recorded(Outcome outcome, std::string record)
{
    outcome.record = std::move(record);
    return outcome;
}

/// The same for every kind.
inline std::map<Kind, Outcome> always(const Outcome& outcome)
{
    return {{Kind::Plain, outcome},
            {Kind::Dataset, outcome},
            {Kind::Collected, outcome},
            {Kind::File, outcome}};
}

/// The same for every kind that has a data phase.
inline std::map<Kind, Outcome> withData(const Outcome& outcome)
{
    return {{Kind::Dataset, outcome}, {Kind::Collected, outcome}, {Kind::File, outcome}};
}

/// The same for every object.
inline std::map<Kind, Outcome> objects(const Outcome& outcome)
{
    return {{Kind::Collected, outcome}, {Kind::File, outcome}};
}

/// The first of them, changed where the second says otherwise.
inline std::map<Kind, Outcome> but(std::map<Kind, Outcome> outcomes,
                                   const std::map<Kind, Outcome>& others)
{
    for (const auto& [kind, outcome] : others)
        outcomes[kind] = outcome;
    return outcomes;
}

/// Data container and response, as they ought to come.
inline Script soundScript(const Answer& answer)
{
    if (!answer.hasData())
        return {sent(answer.response)};
    return {sent(answer.data), sent(answer.response)};
}

/// The sound answer, its first container changed.
template <typename Change> auto changingTheFirst(Change change)
{
    return [change](const Answer& sound) {
        Answer answer = sound;
        change(answer.hasData() ? answer.data : answer.response);
        return soundScript(answer);
    };
}

inline ByteBuffer joined(ByteBuffer bytes, const ByteBuffer& more)
{
    bytes.insert(bytes.end(), more.begin(), more.end());
    return bytes;
}

inline ByteBuffer firstOf(const ByteBuffer& bytes, std::size_t count)
{
    return {bytes.begin(), bytes.begin() + static_cast<std::ptrdiff_t>(count)};
}

inline ByteBuffer behind(const ByteBuffer& bytes, std::size_t count)
{
    return {bytes.begin() + static_cast<std::ptrdiff_t>(count), bytes.end()};
}

}  // namespace nivor::test
