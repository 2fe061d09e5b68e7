#include "formactions.h"

#include "controllookup.h"

#include <QCheckBox>
#include <QComboBox>
#include <vector>

FormAction selectItem(const QString &comboBox, int index)
{
    return
        [=](QWidget &window) { controlNamed<QComboBox>(window, comboBox).setCurrentIndex(index); };
}

FormAction clearItems(const QString &comboBox)
{
    return [=](QWidget &window) { controlNamed<QComboBox>(window, comboBox).clear(); };
}

FormAction setCheck(const QString &checkBox, Qt::CheckState state)
{
    return [=](QWidget &window) {
        auto &box = controlNamed<QCheckBox>(window, checkBox);
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
