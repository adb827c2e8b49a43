/// The engine: owns the camera's USB handles and runs one PTP transaction at a time.
#pragma once

#include "codes/OperationCode.h"
#include "foundation/AtomicProperty.h"
#include "foundation/Bytes.h"
#include "foundation/OperationQueue.h"
#include "foundation/Selector.h"
#include "ptp/AnswerMatch.h"
#include "ptp/ConnectFailure.h"
#include "ptp/DatasetBounds.h"
#include "ptp/EngineParts.h"
#include "ptp/HandleBlock.h"
#include "ptp/TransactionFailure.h"
#include "ptp/TransactionState.h"
#include "usb/UsbHost.h"
#include "usb/UsbTimeouts.h"

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace nivor {

class CommandContainer;
struct ContainerHeader;
class ObjectInfoData;
class ObjectPropValue;
class PTPTransactionCallback;

/// Accepts the still-image interface of any maker, where a vendor ID is asked for.
inline constexpr std::int32_t anyVendorID = -1;

/// PTP (ISO 15740) over the USB Still Image class.
///
/// Every operation answers true for success and hands further results back through its
/// arguments. A recursive lock makes each operation, and the whole of `connect` and `disconnect`,
/// exclusive between threads. `cancelTransaction`, `stopCopyFlgInit` and the property accessors
/// take no lock, so they reach a transaction that another thread is running. A running
/// transaction blocks its caller, bounded by its time-out, which counts time without progress.
class PTPCommunication : public TransactionState {
public:
    /// The process-wide engine, created on first use from the parts given before that.
    static PTPCommunication& sharedManager();

    /// What `sharedManager` is made of. Call once, before its first use.
    static void setSharedParts(EngineParts parts);

    explicit PTPCommunication(EngineParts parts);
    ~PTPCommunication();

    PTPCommunication(const PTPCommunication&) = delete;
    PTPCommunication& operator=(const PTPCommunication&) = delete;

    // --- The connection -------------------------------------------------------------------------

    /// Whether a camera of that vendor is attached: 0 none, 1 the one remembered (or an operation
    /// is running, then nothing is searched), 2 another one, which is remembered now. Never waits.
    std::int64_t existsDevice(std::int32_t vendorID);

    /// As `existsDevice`, without looking at the lock, which the caller holds.
    std::int64_t searchDevice(std::int32_t vendorID);

    /// Takes the first camera of that vendor as `usbDevice` and remembers its identity.
    bool getDeviceInterface(std::int32_t vendorID);

    /// The serial number of a device, UTF-8 of at most 511 bytes; empty when it has none.
    static std::string getSerialNumber(UsbDevice& device);

    /// Opens the first camera of that vendor, its still-image interface and a session.
    /// A camera whose configuration descriptor is unreadable gives true with `connected` false.
    bool connect(std::int32_t vendorID);

    /// Closes the session, the interface and the device, and forgets the camera.
    void disconnect();

    // --- The operations (ISO 15740, 10.4) -------------------------------------------------------

    /// Opens session 1; true when the transaction ended, whatever the response. `timeout` in ms.
    bool openSession(std::uint32_t timeout);

    /// Closes the session; true at once when none is open.
    bool closeSession();

    /// Sets `storageIDs`, if given, to the camera's storages; leaves it alone on a failure.
    bool getStorageIDs(std::vector<std::uint32_t>* storageIDs);

    /// Adds the handles of a storage to `objectHandles`. Association 0 asks for all objects of
    /// the storage, a folder's handle for the objects in it. Raises `RangeError` when the camera
    /// announces more handles than it sends; those that came are in `objectHandles`.
    bool getObjectHandles(std::uint32_t storageID, HandlesDict& objectHandles,
                          std::uint32_t association = 0);

    /// Reads one property of an object into `objectPropValue`, if given; its parser may raise.
    bool getObjectPropValue(const HandleBlock& handle, std::uint32_t propCode,
                            ObjectPropValue* objectPropValue);

    /// Sets `objectInfoData`, if given, to a new record, also when the record did not parse.
    bool getObjectInfo(const HandleBlock& handle, std::shared_ptr<ObjectInfoData>* objectInfoData);

    /// Fetches an object of `objectSize` bytes: to `callback` when there is one, else into
    /// `objectBinaryData`, which may be absent.
    bool getObject(const HandleBlock& handle, std::uint64_t objectSize,
                   ByteBuffer* objectBinaryData, PTPTransactionCallback* callback);

    /// Fetches an object's thumbnail file of `objectSize` bytes.
    bool getThumb(const HandleBlock& handle, std::uint64_t objectSize,
                  ByteBuffer* objectBinaryData);

    /// Deletes an object; true only when the camera answered OK.
    bool deleteObject(const HandleBlock& handle);

    // --- Stopping -------------------------------------------------------------------------------

    /// Sends the Cancel Request for the running transaction and asks the camera up to 10 times
    /// whether it has stopped; only then is `isStopCopyFlg` set and the transaction fails.
    /// Takes no lock; the caller's event loop turns meanwhile. Always answers false.
    bool cancelTransaction();

    /// Lets transactions run again after a stop.
    void stopCopyFlgInit() { setIsStopCopyFlg(false); }

    // --- The transaction ------------------------------------------------------------------------

    /// A slot for received bytes: the caller's own buffer to append to, or empty, to be filled.
    using ReceiveSlot = std::shared_ptr<ByteBuffer>;

    /// Runs one transaction; true when it completed, whatever the response code.
    ///
    /// `command`, `dataBuffer`: containers to send, stamped with the transaction ID on the way.
    /// `receiveBuffer`: where the data container goes, header included, also after a failure.
    /// `receiveBufferSize`: expected bytes of the data container, for one that can't say it.
    /// `receiveCallback`: when given, takes the data instead. `timeout`: in ms without progress.
    bool executePTPTransaction(ByteBuffer& command, ByteBuffer* dataBuffer,
                               ReceiveSlot* receiveBuffer, std::uint64_t receiveBufferSize,
                               PTPTransactionCallback* receiveCallback, bool isReceiveData,
                               std::uint32_t timeout);

    /// Writes one container to the bulk-out pipe and records it.
    bool writePipe(const ByteBuffer& data);

    /// Starts the receive loop of a transaction on the engine's receive thread. The queue stays
    /// from one transaction to the next: to make a thread takes longer than a small transaction.
    OperationQueue& setReceiveOperation(PTPTransactionCallback* receiveCallback);

    // --- Properties -----------------------------------------------------------------------------

    [[nodiscard]] std::shared_ptr<UsbDevice> usbDevice() const { return usbDevice_.get(); }
    void setUsbDevice(std::shared_ptr<UsbDevice> device) { usbDevice_.set(std::move(device)); }

    [[nodiscard]] std::shared_ptr<UsbInterface> usbInterface() const { return usbInterface_.get(); }
    void setUsbInterface(std::shared_ptr<UsbInterface> interface)
    {
        usbInterface_.set(std::move(interface));
    }

    [[nodiscard]] bool connected() const { return connected_; }
    void setConnected(bool value) { connected_ = value; }

    /// USB product ID of the remembered camera; 0 when none.
    [[nodiscard]] std::uint16_t connectedDeviceProductId() const { return productId_; }
    void setConnectedDeviceProductId(std::uint16_t value) { productId_ = value; }

    /// Serial number of the remembered camera; nothing when none is remembered.
    [[nodiscard]] std::optional<std::string> connectedDeviceSerialNumber() const
    {
        return serialNumber_.get();
    }
    void setConnectedDeviceSerialNumber(std::optional<std::string> value)
    {
        serialNumber_.set(std::move(value));
    }

    [[nodiscard]] std::recursive_mutex& lock() { return lock_; }

    // --- For messages ---------------------------------------------------------------------------

    /// Why the last transaction or connection attempt failed.
    [[nodiscard]] TransactionFailure lastTransactionFailure() const { return failure_.get(); }
    [[nodiscard]] ConnectFailure lastConnectFailure() const { return connectFailure_.get(); }

private:
    /// Get Device Status requests after a Cancel Request.
    static constexpr int mostStatusPolls = 10;

    enum class StopReason : std::uint8_t { Finished, TimedOut, Stopped };
    struct Reception;
    struct ReceptionGuard;

    // The transaction, step by step.
    void resetTransaction(ReceiveSlot* receiveBuffer, std::uint64_t receiveBufferSize,
                          bool isReceiveData);
    StopReason waitForReception(OperationQueue& queue, std::uint32_t timeout);
    bool waitOneStepUntil(std::chrono::steady_clock::time_point stepEnd);
    void wakeWaitingThread();
    [[nodiscard]] std::chrono::milliseconds paced(std::chrono::milliseconds duration) const;
    [[nodiscard]] UsbTimeouts paced(const UsbTimeouts& timeouts) const;
    void advanceTransactionID();
    void recordOutcome(StopReason reason);
    void settleAnswer(std::string_view event);
    bool requestCancel(int mostPolls, bool& lastStatusSucceeded);

    // The receive loop; every one of these runs on the receive thread.
    void receive(PTPTransactionCallback* receiveCallback, std::string_view event);
    void receiveContainers(Reception& reception);
    bool receiveContainer(Reception& reception);
    void noteTransaction(const ContainerHeader& header);
    void receiveDataPhase(Reception& reception, std::size_t firstRead, std::uint64_t completeSize);
    UsbResult readPipe(std::span<std::uint8_t> buffer, std::size_t& received);
    bool deliver(Reception& reception, ByteView piece, std::uint64_t completeSize);
    bool collectPiece(Reception& reception, ByteView piece, std::uint64_t completeSize);
    void failSink(const Reception& reception, const char* reason);
    void endRefusedTransaction(Reception& reception);
    void failReception(TransactionFailure::Cause cause, UsbResult result = UsbResult::Success,
                       std::string detail = {});

    // The operations.
    bool exchange(CommandContainer& command, std::uint32_t timeout);
    bool collect(CommandContainer& command, std::uint64_t expectedSize, const DatasetBounds& bounds,
                 ReceiveSlot& received);
    bool fetchWhole(OperationCode operation, const HandleBlock& handle, std::uint64_t objectSize,
                    const DatasetBounds& bounds, ByteBuffer* objectBinaryData);

    // The connection.
    std::optional<StillImageInterface> findCamera(std::int32_t vendorID);
    bool connectFailed(ConnectFailure::Step step, UsbResult result);
    UsbResult openInterface();
    bool openSessionPatiently();
    void releaseCameraFromAgent();
    void closeHandles();

    void writeLog(std::string_view event, std::string_view message);

    EngineParts parts_;
    RollingLogger& logger_;

    AtomicProperty<std::shared_ptr<UsbDevice>> usbDevice_;
    AtomicProperty<std::shared_ptr<UsbInterface>> usbInterface_;
    std::atomic<bool> connected_{false};
    std::atomic<std::uint16_t> productId_{0};
    AtomicProperty<std::optional<std::string>> serialNumber_;

    AtomicProperty<TransactionFailure> failure_;
    AtomicProperty<ConnectFailure> connectFailure_;
    UsbLocation location_;         ///< of `usbDevice`; under `lock_`
    DatasetBounds datasetBounds_;  ///< of the operation's transaction

    // Transaction IDs, 0 for none: of the last command written, and of that at the last stop.
    std::atomic<std::uint32_t> sentTransaction_{0};
    std::atomic<std::uint32_t> stoppedTransaction_{0};

    // Of the calling thread between transactions, of the receive thread during one.
    AnswerMatch answerMatch_;
    bool isDataExpected_ = false;
    bool isResponseEarlier_ = false;  ///< so this transaction's own is still to come

    std::recursive_mutex lock_;

    // Wakes the waiting thread; holds no state beside the atomic flags above.
    std::mutex wakeMutex_;
    std::condition_variable wake_;

    ReceiveBuffer spareBuffer_;  ///< of the transaction before; receive thread

    // Behind all that its operations work on.
    OperationQueue receiveQueue_;

    static std::optional<EngineParts> sharedParts_;
};

}  // namespace nivor
