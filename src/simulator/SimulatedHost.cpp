#include "simulator/SimulatedHost.h"

#include <algorithm>
#include <cassert>
#include <utility>

namespace nivor {

void SimulatedHost::attach(std::shared_ptr<SimulatedCamera> camera)
{
    const std::lock_guard guard(mutex_);
    forgetTheVanished();
    assert(std::none_of(attachments_.begin(), attachments_.end(),
                        [&](const Attachment& other) { return other.camera == camera; }));
    auto device = std::make_shared<SimulatedDevice>(camera, camera->plugIn());
    attachments_.push_back({std::move(camera), std::move(device), nextAddress_++});
}

void SimulatedHost::detach(const std::shared_ptr<SimulatedCamera>& camera)
{
    const std::lock_guard guard(mutex_);
    for (const Attachment& attachment : attachments_) {
        if (attachment.camera == camera)
            attachment.device->leave();
    }
    forgetTheVanished();
}

std::vector<std::shared_ptr<SimulatedCamera>> SimulatedHost::cameras() const
{
    const std::lock_guard guard(mutex_);
    std::vector<std::shared_ptr<SimulatedCamera>> cameras;
    for (const Attachment& attachment : attachments_)
        cameras.push_back(attachment.camera);
    return cameras;
}

bool SimulatedHost::isAttached(const std::shared_ptr<SimulatedCamera>& camera) const
{
    const std::lock_guard guard(mutex_);
    return std::any_of(attachments_.begin(), attachments_.end(), [&](const Attachment& attachment) {
        return attachment.camera == camera && attachment.device->isPresent();
    });
}

std::vector<StillImageInterface> SimulatedHost::stillImageInterfaces()
{
    const std::lock_guard guard(mutex_);
    ++listings_;
    forgetTheVanished();
    std::vector<StillImageInterface> found;
    for (const auto& [camera, device, address] : attachments_) {
        StillImageInterface& entry = found.emplace_back();
        entry.vendorID = camera->identity().vendorID;
        entry.productID = camera->identity().productID;
        entry.location.bus = 1;
        entry.location.address = address;
        entry.location.speed = "simulated";
        entry.device = device;
    }
    return found;
}

std::uint64_t SimulatedHost::listings() const
{
    const std::lock_guard guard(mutex_);
    return listings_;
}

void SimulatedHost::forgetTheVanished()
{
    std::erase_if(attachments_,
                  [](const Attachment& attachment) { return !attachment.device->isPresent(); });
}

}  // namespace nivor
