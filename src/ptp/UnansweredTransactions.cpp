#include "ptp/UnansweredTransactions.h"

#include <algorithm>

namespace nivor {

void UnansweredTransactions::add(std::uint32_t transactionID)
{
    if (transactionIDs_.size() == mostKept)
        transactionIDs_.pop_front();
    transactionIDs_.push_back(transactionID);
}

bool UnansweredTransactions::contains(std::uint32_t transactionID) const
{
    return std::find(transactionIDs_.begin(), transactionIDs_.end(), transactionID)
        != transactionIDs_.end();
}

void UnansweredTransactions::remove(std::uint32_t transactionID)
{
    std::erase(transactionIDs_, transactionID);
}

}  // namespace nivor
