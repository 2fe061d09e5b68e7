#include "formstate.h"

#include "controllookup.h"

#include <QCheckBox>
#include <QComboBox>
#include <QStackedWidget>

namespace {

QString checkStateText(Qt::CheckState state)
{
    switch (state) {
    case Qt::Unchecked:
        return QStringLiteral("unchecked");
    case Qt::PartiallyChecked:
        return QStringLiteral("partially checked");
    case Qt::Checked:
        return QStringLiteral("checked");
    }
    return QStringLiteral("check state %1").arg(state);
}

QString stateOf(const QWidget &widget)
{
    QString state;
    if (const auto *comboBox = qobject_cast<const QComboBox *>(&widget))
        state = QStringLiteral("%1 ").arg(comboBox->currentIndex());
    else if (const auto *checkBox = qobject_cast<const QCheckBox *>(&widget))
        state = checkStateText(checkBox->checkState()) + QLatin1Char(' ');
    // The control's own flag, not what a disabled page makes of it.
    state += widget.isEnabledTo(widget.parentWidget()) ? QStringLiteral("enabled")
                                                       : QStringLiteral("disabled");
    // The tab widget hides every page but the current one; that says nothing about the form.
    const bool isTabPage = qobject_cast<const QStackedWidget *>(widget.parentWidget()) != nullptr;
    if (widget.isHidden() && !isTabPage)
        state += QStringLiteral(" hidden");
    return state;
}

} // namespace

QStringList statesLike(const QWidget &window, const QStringList &expected)
{
    QStringList actual;
    for (const QString &line : expected) {
        const QString name = line.section(QStringLiteral(": "), 0, 0);
        actual << name + QStringLiteral(": ") + stateOf(controlNamed<QWidget>(window, name));
    }
    return actual;
}

int currentIndexOf(const QWidget &window, const QString &comboBox)
{
    return controlNamed<QComboBox>(window, comboBox).currentIndex();
}
