#include <QApplication>
#include <QDrag>
#include <QDropEvent>
#include <QMimeData>
#include <QMouseEvent>
#include <QUrl>
#include <QWidget>

#include <cstdio>
#include <utility>

// toolkit-drags source URI... | target
//
// A Qt window at (40, 400) out of which a pressed button drags the files, or one at (400, 400) that takes anything.
// Prints "ready"; a source "began" and "ended copy" or "ended none"; a target "type NAME BYTES" for each type dropped,
// percent-encoded, then "done".

namespace {

void tell(const QByteArray &line)
{
    std::puts(line.constData());
    std::fflush(stdout);
}

class Window : public QWidget
{
public:
    explicit Window(const QList<QUrl> &urls)
        : QWidget(nullptr, Qt::FramelessWindowHint | Qt::BypassWindowManagerHint)
        , m_urls(urls)
    {
        setAcceptDrops(urls.isEmpty());
        setGeometry(urls.isEmpty() ? 400 : 40, 400, 200, 100);
        show();
    }

protected:
    void mouseMoveEvent(QMouseEvent *event) override
    {
        if (m_urls.isEmpty() || !(event->buttons() & Qt::LeftButton)) {
            return;
        }
        auto *files = new QMimeData;
        files->setUrls(m_urls);
        auto *drag = new QDrag(this);
        drag->setMimeData(files);
        tell("began");
        tell(drag->exec(Qt::CopyAction | Qt::MoveAction) == Qt::CopyAction ? "ended copy" : "ended none");
    }
    void paintEvent(QPaintEvent *) override
    {
        if (!std::exchange(m_isReady, true)) {
            tell("ready");
        }
    }
    void dragEnterEvent(QDragEnterEvent *event) override { event->acceptProposedAction(); }
    void dropEvent(QDropEvent *event) override
    {
        for (const QString &type : event->mimeData()->formats()) {
            tell("type " + type.toUtf8() + ' ' + event->mimeData()->data(type).toPercentEncoding("/:"));
        }
        event->acceptProposedAction();
        tell("done");
    }

private:
    QList<QUrl> m_urls;
    bool m_isReady = false;
};

} // namespace

int main(int argc, char **argv)
{
    const QApplication application(argc, argv);
    QList<QUrl> urls;
    for (const QString &argument : QApplication::arguments().mid(2)) {
        urls << QUrl::fromEncoded(argument.toUtf8());
    }
    const Window window(urls);
    return QApplication::exec();
}
