// A window to drag files out of, as the program's own does it, without a camera.
//
// usage: DragSource FILE…
//
// Pressing the button on the window and moving drags the files, which are copied to the folder of
// the drop. Standard output tells what happens, a line each:
//
//   ready                   the window is there
//   drag begins
//   over a target           which would take the files; "over nothing" otherwise
//   drag is over            the button has been released
//   dropped onto FOLDER     and the files are in the folder
//   dropped nowhere named   the target has taken the drop without naming a folder
//   wrong order             a callback came within the drag

#include "app/FileDrag.h"

#include <QApplication>
#include <QDrag>
#include <QFile>
#include <QFileInfo>
#include <QLabel>
#include <QMouseEvent>
#include <QTimer>

#include <cstdio>

namespace {

void say(const QString& line)
{
    std::puts(qPrintable(line));
    std::fflush(stdout);
}

class Source : public QLabel {
public:
    explicit Source(const QStringList& files)
        : files_(files)
    {
        setWindowTitle(QStringLiteral("Drag source"));
        setAlignment(Qt::AlignCenter);
        setText(files.join(u'\n'));
        resize(400, 300);
    }

protected:
    void mouseMoveEvent(QMouseEvent* event) override
    {
        if (event->buttons().testFlag(Qt::LeftButton) && !isDragging_)
            drag();
    }

private:
    void drag()
    {
        QStringList names;
        for (const QString& file : files_)
            names += QFileInfo(file).fileName();

        say(QStringLiteral("drag begins"));
        isDragging_ = true;
        QTimer::singleShot(0, this, [this] { tellTargets(); });
        drag_.exec(this, names, grab().scaledToWidth(100));
        isDragging_ = false;
        say(QStringLiteral("drag is over"));
    }

    /// Qt makes the drag a child of its source, and knows it only while it goes on.
    void tellTargets()
    {
        const auto* drag = findChild<QDrag*>();
        if (drag == nullptr)
            return;
        connect(drag, &QDrag::actionChanged, this, [](Qt::DropAction action) {
            say(action == Qt::CopyAction ? QStringLiteral("over a target")
                                         : QStringLiteral("over nothing"));
        });
    }

    void copyTo(const QUrl& folder)
    {
        for (const QString& file : files_) {
            // A name that is taken gets a number; the copy never replaces a file.
            const QString path = folder.toLocalFile() + u'/';
            const QString name = QFileInfo(file).fileName();
            QString free = name;
            for (int number = 2; QFileInfo::exists(path + free); ++number)
                free = QString::number(number) + u' ' + name;
            if (!QFile::copy(file, path + free))
                say(QStringLiteral("not copied: ") + path + free);
        }
        tell(QStringLiteral("dropped onto ") + folder.toString(QUrl::FullyEncoded));
    }

    void tell(const QString& outcome)
    {
        say(isDragging_ ? QStringLiteral("wrong order") : outcome);
    }

    const QStringList files_;
    bool isDragging_ = false;
    nivor::FileDrag drag_{
        {.droppedOnto = [this](const QUrl& folder) { copyTo(folder); },
         .droppedNowhereNamed = [this] { tell(QStringLiteral("dropped nowhere named")); }}};
};

}  // namespace

int main(int argc, char** argv)
{
    const QApplication application(argc, argv);
    Source source(QApplication::arguments().mid(1));
    source.show();
    say(QStringLiteral("ready"));
    return QApplication::exec();
}
