/// A camera made of software: it answers PTP behind the USB seam, and misbehaves when told to.
#pragma once

#include "simulator/BulkInPipe.h"
#include "simulator/CameraIdentity.h"
#include "simulator/CameraRecord.h"
#include "simulator/Card.h"
#include "simulator/FaultPlan.h"
#include "simulator/FaultTracker.h"
#include "simulator/ListingStyle.h"
#include "simulator/Pace.h"
#include "simulator/PtpResponder.h"
#include "usb/ControlRequest.h"

#include <memory>
#include <mutex>
#include <optional>

namespace nivor {

/// What a camera is made with; pace and faults can be changed later.
struct CameraSettings {
    CameraIdentity identity{};
    Pace pace{};
    FaultPlan faults{};
    ListingStyle listing = ListingStyle::WholeStorage;
    std::size_t maxPacketSize = 512;  ///< of the bulk pipes, bytes: a power of two from 8 to 1024
    std::uint32_t storageID = 0x00010001;
};

/// Works through `SimulatedDevice` and `SimulatedInterface`, which `SimulatedHost::attach` makes;
/// the settings and the record are for its owner. Every operation may be called from any thread.
///
/// Commands are carried out when they are written and their answers queue up in order; the data
/// of an object is made only when it is read.
class SimulatedCamera {
public:
    explicit SimulatedCamera(std::shared_ptr<Card> card, CameraSettings settings = {});

    SimulatedCamera(const SimulatedCamera&) = delete;
    SimulatedCamera& operator=(const SimulatedCamera&) = delete;

    [[nodiscard]] const CameraIdentity& identity() const { return settings_.identity; }
    [[nodiscard]] const std::shared_ptr<Card>& card() const { return card_; }

    /// A snapshot of what happened so far.
    [[nodiscard]] CameraRecord record() const;

    [[nodiscard]] bool hasOpenSession() const;

    /// Takes effect with the next command; bytes that wait already move at the new pace.
    void setPace(const Pace& pace);

    /// Replaces the plan; occurrences are counted from here on.
    void setFaults(FaultPlan faults);

    // What the simulated device and interface use.

    /// The camera is plugged in: starts a new pipe, with no session open.
    std::shared_ptr<BulkInPipe> plugIn();

    /// Bytes written to the bulk-out pipe, in the attachment whose bulk-in pipe is `attachment`;
    /// those of an attachment that is over count for nothing.
    void receive(ByteView bytes, const BulkInPipe& attachment);

    /// A class request on the control pipe, in that attachment.
    UsbResult control(ControlRequest& request, const BulkInPipe& attachment);

    /// The failure that the plan has for this call now, or `UsbResult::Success`.
    UsbResult faultAt(UsbStep step);

private:
    void answer(const PtpCommand& command);
    UsbResult cancel(ControlRequest& request);
    UsbResult reportStatus(ControlRequest& request);
    UsbResult reset();
    void forgetCancelling();

    const std::shared_ptr<Card> card_;
    const CameraSettings settings_;  // pace and faults: as they were at first

    mutable std::mutex mutex_;
    Pace pace_;
    FaultTracker faults_;
    PtpResponder responder_;
    CameraRecord record_;
    std::shared_ptr<BulkInPipe> pipe_;
    std::optional<std::uint32_t> unanswered_;  // a command that is met with silence
    unsigned busyPollsLeft_ = 0;
    bool busyForever_ = false;
    bool isCancelled_ = false;  ///< the last transaction
};

}  // namespace nivor
