#include "formactions.h"

#include <QCheckBox>
#include <QComboBox>
#include <vector>

namespace {

template <typename Control> Control &control(QWidget &window, const QString &name)
{
    auto *found = window.findChild<Control *>(name);
    if (found == nullptr)
        qFatal("The form has no %s named %s", Control::staticMetaObject.className(),
               qPrintable(name));
    return *found;
}

} // namespace

FormAction selectItem(const QString &comboBox, int index)
{
    return [=](QWidget &window) { control<QComboBox>(window, comboBox).setCurrentIndex(index); };
}

FormAction clearItems(const QString &comboBox)
{
    return [=](QWidget &window) { control<QComboBox>(window, comboBox).clear(); };
}

FormAction setCheck(const QString &checkBox, Qt::CheckState state)
{
    return [=](QWidget &window) {
        auto &box = control<QCheckBox>(window, checkBox);
        if (state == Qt::PartiallyChecked)
            box.setTristate(true);
        box.setCheckState(state);
    };
}

FormAction inOrder(std::initializer_list<FormAction> actions)
{
    return [steps = std::vector<FormAction>(actions)](QWidget &window) {
        for (const FormAction &step : steps)
            step(window);
    };
}
