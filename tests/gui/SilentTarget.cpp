// A window that takes every drop and never asks for what was dropped.
//
// usage: SilentTarget TITLE [hang]
//
// With "hang" it stops dead when something is dropped, so it never says that it has finished.

#include <QApplication>
#include <QDropEvent>
#include <QWidget>

#include <csignal>

namespace {

class Target : public QWidget {
public:
    explicit Target(bool hangs)
        : hangs_(hangs)
    {
        setAcceptDrops(true);
    }

protected:
    void dragEnterEvent(QDragEnterEvent* event) override { event->acceptProposedAction(); }

    void dropEvent(QDropEvent* event) override
    {
        if (hangs_)
            std::raise(SIGSTOP);
        event->acceptProposedAction();
    }

private:
    const bool hangs_;
};

}  // namespace

int main(int argc, char** argv)
{
    const QApplication application(argc, argv);
    const QStringList arguments = QApplication::arguments();
    Target target(arguments.contains(QStringLiteral("hang")));
    target.setWindowTitle(arguments.value(1));
    target.show();
    return QApplication::exec();
}
