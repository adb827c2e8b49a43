/// The real window on simulated cameras, without a screen.
#pragma once

#include "app/AppFixture.h"
#include "app/MainWindow.h"
#include "app/OutlineView.h"

#include <QContextMenuEvent>
#include <QMouseEvent>
#include <QTest>

namespace nivor::test {

class MainWindowFixture : public AppFixture {
protected:
    MainWindowFixture()
    {
        real.setController(controller);
        controller.awakeFromNib();
        real.resize(900, 600);
        real.show();
    }

    ~MainWindowFixture() override { QCoreApplication::processEvents(); }

    /// DCIM with A.JPG, B.MOV and README, and a file beside it.
    void listSmallCard()
    {
        const std::uint32_t dcim = card->addFolder(u"DCIM");
        card->addFile(u"B.MOV", 2000, dcim);
        card->addFile(u"A.JPG", 1000, dcim);
        card->addFile(u"README", 10, dcim);
        card->addFile(u"TOP.JPG", 10);
        plugIn();
        listCamera();
    }

    void listCamera()
    {
        mainQueue.advance(std::chrono::seconds(1));
        controller.checkNIVORConnectionTimerFire();
        mainQueue.advance(std::chrono::seconds(1));
        controller.operationQueue().waitUntilAllOperationsAreFinished();
        mainQueue.advance(std::chrono::seconds(2));
        controller.checkNIVORConnectionTimerFire();
        QCoreApplication::processEvents();
    }

    std::vector<std::string> rows() const
    {
        std::vector<std::string> names;
        for (int row = 0; row < real.numberOfRows(); ++row)
            names.push_back(namesOf({real.itemAtRow(row)}).front());
        return names;
    }

    QModelIndex index(const char* name, int column = 0) const
    {
        for (int row = 0; row < real.numberOfRows(); ++row) {
            if (namesOf({real.itemAtRow(row)}).front() == name)
                return real.objects().indexOf(real.itemAtRow(row).get()).siblingAtColumn(column);
        }
        return {};
    }

    QPoint centerOf(const char* name) const
    {
        return real.outlineView().visualRect(index(name)).center();
    }

    void click(const char* name, Qt::KeyboardModifiers modifiers = {})
    {
        QTest::mouseClick(real.outlineView().viewport(), Qt::LeftButton, modifiers, centerOf(name));
        QCoreApplication::processEvents();
    }

    void openMenuOn(const char* name)
    {
        const QPoint at = centerOf(name);
        QWidget* viewport = real.outlineView().viewport();
        QContextMenuEvent event(QContextMenuEvent::Mouse, at, viewport->mapToGlobal(at));
        QCoreApplication::sendEvent(viewport, &event);
    }

    int heightOf(const char* name) const
    {
        return real.outlineView().visualRect(index(name)).height();
    }

    /// Moves the mouse with the left button held, as `QTest` does not.
    void dragMouse(const QPoint& from, const QPoint& way)
    {
        QWidget* viewport = real.outlineView().viewport();
        QTest::mousePress(viewport, Qt::LeftButton, {}, from);
        for (const double part : {0.5, 1.0}) {
            const QPointF at = QPointF(from) + QPointF(way) * part;
            QMouseEvent move(QEvent::MouseMove, at, viewport->mapToGlobal(at), Qt::NoButton,
                             Qt::LeftButton, Qt::NoModifier);
            QCoreApplication::sendEvent(viewport, &move);
        }
    }

    MainWindow real{mainQueue, settings};
    AppDelegate controller{{.engine = engine,
                            .logger = log.logger(),
                            .mainQueue = mainQueue,
                            .window = real,
                            .alerts = alerts,
                            .folderChooser = chooser,
                            .settings = settings,
                            .vendorID = anyVendorID,
                            .version = "1.2.0",
                            .logDirectory = log.logger().saveDirectory()}};
};

}  // namespace nivor::test
