#include "tabsprobestyle.h"

#include <QApplication>
#include <QImage>
#include <QMainWindow>
#include <QPixmap>
#include <QProcess>
#include <QScreen>
#include <QStyleFactory>
#include <QTabBar>
#include <QTextStream>
#include <QTimer>
#include <QToolButton>
#include <QWindow>
#include <algorithm>

namespace {

QTextStream &out()
{
    static QTextStream stream(stdout);
    return stream;
}

QString describe(const QRect &rect)
{
    return QStringLiteral("%1,%2 %3x%4")
        .arg(rect.x())
        .arg(rect.y())
        .arg(rect.width())
        .arg(rect.height());
}

QMainWindow *editorWindow()
{
    for (QWidget *widget : QApplication::topLevelWidgets()) {
        if (auto *window = qobject_cast<QMainWindow *>(widget))
            return window;
    }
    return nullptr;
}

// Waits for the X server to show the window: each try handles the events that have arrived,
// blocking until one does, so the wait follows the window's real state and takes no fixed time.
bool waitUntilExposed(QWidget *window)
{
    constexpr int maximumTries = 200;
    for (int tries = 0; tries < maximumTries; ++tries) {
        if (window->windowHandle() && window->windowHandle()->isExposed())
            return true;
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }
    return false;
}

// The failures found on one tab bar, empty when every tab is fully visible.
QStringList checkTabBar(const QMainWindow &window, const QTabBar &bar)
{
    QStringList failures;
    const QRect barInWindow(bar.mapTo(&window, QPoint(0, 0)), bar.size());
    if (!bar.isVisible() || !window.rect().contains(barInWindow))
        failures << QStringLiteral("tab bar %1 outside the window %2")
                        .arg(describe(barInWindow), describe(window.rect()));
    // Tabs that do not fit make the bar show its scroll arrows, drawn over the last tabs.
    QList<QRect> arrows;
    for (const QToolButton *arrow : bar.findChildren<QToolButton *>()) {
        if (arrow->isVisible())
            arrows << arrow->geometry();
    }
    if (!arrows.isEmpty())
        failures << QStringLiteral("scroll arrows shown: the tabs do not fit");
    for (int index = 0; index < bar.count(); ++index) {
        const QRect tab = bar.tabRect(index);
        const int textWidth = bar.fontMetrics().horizontalAdvance(bar.tabText(index));
        const bool underArrow = std::any_of(arrows.begin(), arrows.end(), [&](const QRect &arrow) {
            return arrow.intersects(tab);
        });
        const bool visible = bar.rect().contains(tab) && !underArrow && textWidth <= tab.width();
        out() << "tab " << index << " \"" << bar.tabText(index) << "\" " << describe(tab)
              << " text " << textWidth << (visible ? " visible" : " NOT fully visible") << "\n";
        if (!visible)
            failures << QStringLiteral("tab \"%1\" not fully visible").arg(bar.tabText(index));
    }
    return failures;
}

// The tab bar as the screen shows it must be the tab bar as the editor paints it, but for its
// bottom edge, which the tab page's frame overlaps on the screen (by one pixel more on a scaled
// screen, where the frame's line is drawn half a pixel higher).
QStringList compareWithScreen(const QImage &screen, QTabBar &bar, qreal ratio)
{
    const int overlap = bar.style()->pixelMetric(QStyle::PM_TabBarBaseOverlap, nullptr, &bar) + 1;
    const QRect compared(QPoint(0, 0), QSize(bar.width(), bar.height() - overlap) * ratio);
    const QRect onScreen = compared.translated(bar.mapToGlobal(QPoint(0, 0)) * ratio);
    const QImage painted =
        bar.grab().toImage().copy(compared).convertToFormat(QImage::Format_RGB32);
    const QImage shown = screen.copy(onScreen).convertToFormat(QImage::Format_RGB32);
    out() << "tab bar on screen at " << describe(onScreen) << " device pixels\n";
    if (painted != shown)
        return {QStringLiteral("the screenshot does not show the tab bar as painted")};
    return {};
}

void reportWindowClass(QWidget *window)
{
    QProcess xprop;
    xprop.start(QStringLiteral("xprop"), {QStringLiteral("-id"), QString::number(window->winId()),
                                          QStringLiteral("WM_CLASS")});
    if (xprop.waitForFinished())
        out() << xprop.readAllStandardOutput();
    else
        out() << "xprop did not run: " << xprop.errorString() << "\n";
}

void inspect()
{
    QMainWindow *window = editorWindow();
    if (!window || !waitUntilExposed(window)) {
        out() << "FAIL: the editor's window never appeared on the screen\n";
        QCoreApplication::exit(1);
        return;
    }
    window->repaint();
    QScreen *screen = window->windowHandle()->screen();
    const qreal ratio = window->devicePixelRatioF();
    out() << "screen " << describe(screen->geometry()) << " logical dpi "
          << screen->logicalDotsPerInch() << " physical dpi " << screen->physicalDotsPerInch()
          << " device pixel ratio " << ratio << "\n";
    out() << "window " << describe(window->frameGeometry()) << "\n";
    reportWindowClass(window);

    QStringList failures;
    if (!screen->geometry().contains(window->frameGeometry()))
        failures << QStringLiteral("the window does not fit on the screen");
    const QImage shot = screen->grabWindow(0).toImage();
    const QString shotPath = qEnvironmentVariable("LUMAREX_PROBE_SCREENSHOT");
    if (!shotPath.isEmpty() && !shot.save(shotPath))
        failures << QStringLiteral("cannot write the screenshot %1").arg(shotPath);
    const QList<QTabBar *> bars = window->findChildren<QTabBar *>();
    if (bars.isEmpty())
        failures << QStringLiteral("no tab bar found");
    for (QTabBar *bar : bars)
        failures << checkTabBar(*window, *bar) << compareWithScreen(shot, *bar, ratio);

    for (const QString &failure : failures)
        out() << "FAIL: " << failure << "\n";
    out().flush();
    QCoreApplication::exit(failures.isEmpty() ? 0 : 1);
}

} // namespace

TabsProbeStyle::TabsProbeStyle() : QProxyStyle(QStyleFactory::create(QStringLiteral("Fusion"))) {}

void TabsProbeStyle::polish(QApplication *application)
{
    QProxyStyle::polish(application);
    static bool scheduled = false;
    if (scheduled)
        return;
    scheduled = true;
    // Runs once the editor's event loop has started, after its main showed the window.
    QTimer::singleShot(0, application, &inspect);
}

QStyle *TabsProbePlugin::create(const QString &key)
{
    if (key.compare(QStringLiteral("lumarex-tabs-probe"), Qt::CaseInsensitive) == 0)
        return new TabsProbeStyle;
    return nullptr;
}
