/// The responder's side of PTP: the session, and the operations on a card (ISO 15740, clause 10).
#pragma once

#include "simulator/CameraIdentity.h"
#include "simulator/Card.h"
#include "simulator/ListingStyle.h"
#include "simulator/PtpAnswer.h"
#include "simulator/PtpCommand.h"

#include <cstdint>
#include <memory>
#include <optional>

namespace nivor {

/// Knows nothing of containers, pipes and faults. Not for use from several threads at a time; the
/// data phases that it hands out may be produced on any thread and outlive it.
class PtpResponder {
public:
    PtpResponder(std::shared_ptr<Card> card, const CameraIdentity& identity, ListingStyle listing,
                 std::uint32_t storageID);

    /// Carries a command out.
    PtpAnswer answer(const PtpCommand& command);

    [[nodiscard]] bool hasOpenSession() const { return sessionID_ != 0; }
    void closeSession() { sessionID_ = 0; }

private:
    PtpAnswer answerInSession(const PtpCommand& command);
    PtpAnswer openSession(const PtpCommand& command);
    PtpAnswer getDeviceInfo() const;
    PtpAnswer getStorageIDs() const;
    PtpAnswer getStorageInfo(std::uint32_t storageID) const;
    PtpAnswer getNumObjects(const PtpCommand& command) const;
    PtpAnswer getObjectHandles(const PtpCommand& command) const;
    PtpAnswer getObjectInfo(std::uint32_t handle) const;
    PtpAnswer getObject(std::uint32_t handle) const;
    PtpAnswer getThumb(std::uint32_t handle) const;
    PtpAnswer deleteObject(const PtpCommand& command) const;
    PtpAnswer getObjectPropValue(const PtpCommand& command) const;

    /// The objects that a listing command asks for, or the code that refuses it.
    ResponseCode select(const PtpCommand& command, std::vector<std::uint32_t>& selected) const;

    const std::shared_ptr<Card> card_;
    const CameraIdentity identity_;
    const ListingStyle listing_;
    const std::uint32_t storageID_;
    std::uint32_t sessionID_ = 0;  // 0 = none is open
};

}  // namespace nivor
