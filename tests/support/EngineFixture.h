/// An engine on a scripted camera, with its log in a folder of its own.
#pragma once

#include "ptp/PTPCommunication.h"
#include "support/LogRecords.h"
#include "support/ScriptedCamera.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace nivor::test {

class EngineFixture : public ::testing::Test {
protected:
    /// Puts the engine where a connection would have put it, without any traffic.
    void attachDirectly()
    {
        engine.setUsbDevice(device);
        engine.setUsbInterface(device->interface);
        engine.setTransactionID(1);
    }

    ScriptedInterface& pipes() { return *device->interface; }

    LogFixture log;
    std::shared_ptr<ScriptedHost> host = std::make_shared<ScriptedHost>();
    std::shared_ptr<ScriptedDevice> device = host->attach();
    PTPCommunication engine{{.host = host, .logger = &log.logger(), .agentPause = {}}};
};

}  // namespace nivor::test
