#include "simulator/SimulatedCamera.h"

#include "codes/ClassRequest.h"
#include "codes/EventCode.h"
#include "codes/StillImageClass.h"
#include "foundation/ByteReader.h"
#include "foundation/ByteWriter.h"
#include "simulator/AnswerComposer.h"
#include "simulator/AnswerShape.h"

#include <algorithm>
#include <chrono>
#include <utility>

namespace nivor {

namespace {

double bytesPerSecond(const Pace& pace)
{
    return pace.megabytesPerSecond * 1e6;
}

}  // namespace

SimulatedCamera::SimulatedCamera(std::shared_ptr<Card> card, CameraSettings settings)
    : card_(std::move(card))
    , settings_(std::move(settings))
    , pace_(settings_.pace)
    , faults_(settings_.faults)
    , responder_(card_, settings_.identity, settings_.listing, settings_.storageID)
{
}

CameraRecord SimulatedCamera::record() const
{
    const std::lock_guard guard(mutex_);
    CameraRecord snapshot = record_;
    if (pipe_)
        snapshot.bytesSent += pipe_->bytesSent();
    return snapshot;
}

bool SimulatedCamera::hasOpenSession() const
{
    const std::lock_guard guard(mutex_);
    return responder_.hasOpenSession();
}

void SimulatedCamera::setPace(const Pace& pace)
{
    const std::lock_guard guard(mutex_);
    pace_ = pace;
    if (pipe_)
        pipe_->setRate(bytesPerSecond(pace));
}

void SimulatedCamera::setFaults(FaultPlan faults)
{
    const std::lock_guard guard(mutex_);
    faults_ = FaultTracker(std::move(faults));
}

std::shared_ptr<BulkInPipe> SimulatedCamera::plugIn()
{
    const std::lock_guard guard(mutex_);
    if (pipe_)
        record_.bytesSent += pipe_->bytesSent();
    pipe_ = std::make_shared<BulkInPipe>(settings_.maxPacketSize);
    pipe_->setRate(bytesPerSecond(pace_));
    responder_.closeSession();
    forgetCancelling();
    return pipe_;
}

UsbResult SimulatedCamera::faultAt(UsbStep step)
{
    const std::lock_guard guard(mutex_);
    return faults_.strike(step);
}

void SimulatedCamera::receive(ByteView bytes, const BulkInPipe& attachment)
{
    const std::lock_guard guard(mutex_);
    if (&attachment != pipe_.get())
        return;
    record_.commands.emplace_back(bytes.begin(), bytes.end());
    if (record_.commands.size() > CameraRecord::mostCommandsKept)
        record_.commands.pop_front();

    const std::optional<PtpCommand> command = PtpCommand::parse(bytes);
    if (!command) {
        // There is no transaction to respond to, so the pipe is stalled (Still Image class, 7.2).
        pipe_->queue({.halt = InTransfer::Halt::Once});
        return;
    }
    ++record_.requests[command->operation];
    forgetCancelling();
    answer(*command);
}

void SimulatedCamera::answer(const PtpCommand& command)
{
    const auto received = std::chrono::steady_clock::now();
    const AnswerShape shape = AnswerShape::of(faults_.strike(command.operation));
    if (shape.vanish && !shape.vanish->afterBytes) {
        pipe_->disconnect();
        return;
    }

    const bool hadSession = responder_.hasOpenSession();
    PtpAnswer answer = shape.carriesOut() ? responder_.answer(command) : PtpAnswer::ok();
    if (!hadSession && responder_.hasOpenSession())
        ++record_.sessionsOpened;

    std::vector<InTransfer> transfers = AnswerComposer(command).compose(std::move(answer), shape);
    if (transfers.empty())
        unanswered_ = command.transactionID;
    for (InTransfer& transfer : transfers) {
        transfer.readyAt = received + pace_.perTransaction + shape.delay;
        pipe_->queue(std::move(transfer));
    }
}

UsbResult SimulatedCamera::control(ControlRequest& request, const BulkInPipe& attachment)
{
    request.transferred = 0;
    const std::lock_guard guard(mutex_);
    if (&attachment != pipe_.get())
        return UsbResult::NoDevice;
    const bool isOut = request.bmRequestType == classRequestOut;
    const bool isIn = request.bmRequestType == classRequestIn;
    const auto code = static_cast<ClassRequest>(request.bRequest);
    if (request.wValue == 0 && request.wIndex == 0) {
        if (isOut && code == ClassRequest::CancelRequest) {
            ++record_.cancelRequests;
            return cancel(request);
        }
        if (isIn && code == ClassRequest::GetDeviceStatus) {
            ++record_.statusRequests;
            return reportStatus(request);
        }
        if (isOut && code == ClassRequest::DeviceReset)
            return reset();
    }
    return UsbResult::PipeStalled;
}

UsbResult SimulatedCamera::cancel(ControlRequest& request)
{
    if (const UsbResult failure = faults_.strike(UsbStep::CancelRequest); !succeeded(failure))
        return failure;

    ByteReader reader(request.data);
    const auto code = static_cast<EventCode>(reader.u16());
    const std::uint32_t transactionID = reader.u32();
    if (!reader.ok() || reader.remaining() != 0 || code != EventCode::CancelTransaction)
        return UsbResult::PipeStalled;
    request.transferred = request.data.size();

    const CancelBehaviour& behaviour = faults_.cancelling();
    if (behaviour.ignored)
        return UsbResult::Success;
    const bool wasUnanswered = unanswered_ == transactionID;
    if (!pipe_->drop(transactionID) && !wasUnanswered)
        return UsbResult::Success;  // nothing of that transaction is under way

    unanswered_.reset();
    isCancelled_ = true;
    busyPollsLeft_ = behaviour.busyPolls;
    busyForever_ = behaviour.neverOK;
    if (behaviour.response) {
        const PtpCommand stopped{.transactionID = transactionID};
        pipe_->queue({.transactionID = transactionID,
                      .head = AnswerComposer(stopped).response(*behaviour.response)});
    }
    return UsbResult::Success;
}

UsbResult SimulatedCamera::reportStatus(ControlRequest& request)
{
    if (const UsbResult failure = faults_.strike(UsbStep::GetDeviceStatus); !succeeded(failure))
        return failure;
    if (faults_.cancelling().emptyStatus)
        return UsbResult::Success;

    const bool isBusy = busyForever_ || busyPollsLeft_ > 0;
    if (busyPollsLeft_ > 0)
        --busyPollsLeft_;
    constexpr std::uint16_t statusSize = 4;
    ByteBuffer status;
    appendLittleEndian(status, statusSize);
    appendLittleEndian(
        status, static_cast<std::uint16_t>(isBusy ? ResponseCode::DeviceBusy : ResponseCode::OK));
    if (!isBusy && isCancelled_)
        pipe_->setSettled(true);
    request.transferred = std::min(status.size(), request.data.size());
    std::copy_n(status.begin(), request.transferred, request.data.begin());
    return UsbResult::Success;
}

UsbResult SimulatedCamera::reset()
{
    pipe_->flush();
    responder_.closeSession();
    forgetCancelling();
    return UsbResult::Success;
}

/// What is left of the last transaction no longer counts.
void SimulatedCamera::forgetCancelling()
{
    unanswered_.reset();
    busyPollsLeft_ = 0;
    busyForever_ = false;
    isCancelled_ = false;
    pipe_->setSettled(false);
}

}  // namespace nivor
