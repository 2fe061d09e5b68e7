// A style plugin that the desktop test loads into the real editor through the toolkit's
// QT_STYLE_OVERRIDE: it draws exactly as Fusion, the style the editor gets on a bare X server,
// and once the editor's window is on the screen it checks that every tab is fully visible,
// writes a screenshot of the screen and ends the editor with the outcome as its exit status.
#pragma once

#include <QProxyStyle>
#include <QStylePlugin>

class TabsProbeStyle : public QProxyStyle
{
public:
    TabsProbeStyle();
    void polish(QApplication *application) override;
    using QProxyStyle::polish;
};

class TabsProbePlugin : public QStylePlugin
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID "org.qt-project.Qt.QStyleFactoryInterface" FILE "tabsprobe.json")

public:
    QStyle *create(const QString &key) override;
};
