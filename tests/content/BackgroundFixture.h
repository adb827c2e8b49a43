/// A model that a background loader fills from simulated cameras.
#pragma once

#include "content/BackgroundLoader.h"
#include "content/CameraPriority.h"
#include "content/GatedCard.h"
#include "content/SimulatedCameraFixture.h"
#include "support/ManualMainQueue.h"

namespace nivor::test {

class BackgroundFixture : public ::testing::Test {
protected:
    using Parts = BackgroundLoader::Parts;

    std::shared_ptr<SimulatedCamera> plugIn(const std::shared_ptr<Card>& itsCard,
                                            CameraSettings settings = {})
    {
        auto camera = std::make_shared<SimulatedCamera>(itsCard, std::move(settings));
        host->attach(camera);
        return camera;
    }

    /// Starts a load and waits until it has read all it will.
    void load()
    {
        loader.setupDataModels();
        mainQueue.advance(BackgroundLoader::startDelay);
        loader.operationQueue().waitUntilAllOperationsAreFinished();
    }

    void loadWhole()
    {
        load();
        mainQueue.advance(BackgroundLoader::publicationDelay);
    }

    std::vector<std::string> shown() const
    {
        const auto objects = model.dataModels();
        return objects ? namesOf(*objects) : std::vector<std::string>{"(null)"};
    }

    LogFixture log;
    std::shared_ptr<GatedCard> card = std::make_shared<GatedCard>();
    std::shared_ptr<SimulatedHost> host = std::make_shared<SimulatedHost>();
    PTPCommunication engine{{.host = host, .logger = &log.logger(), .agentPause = {}}};
    ContentModel model;
    CameraPriority priority;
    ManualMainQueue mainQueue;
    BackgroundLoader loader{Parts{engine, model, priority, mainQueue, anyVendorID}};
};

}  // namespace nivor::test
