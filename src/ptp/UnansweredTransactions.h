/// Which commands the camera still owes an answer to.
#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>

namespace nivor {

/// The IDs of the last transactions that ended before their response came. Their answers may come
/// yet, in the place of others. One thread at a time.
class UnansweredTransactions {
public:
    void add(std::uint32_t transactionID);

    /// Whether a container of that transaction is a late one.
    [[nodiscard]] bool contains(std::uint32_t transactionID) const;

    /// Its response has come after all.
    void remove(std::uint32_t transactionID);

    /// There is a new connection, which counts anew.
    void clear() { transactionIDs_.clear(); }

private:
    static constexpr std::size_t mostKept = 64;

    std::deque<std::uint32_t> transactionIDs_;
};

}  // namespace nivor
