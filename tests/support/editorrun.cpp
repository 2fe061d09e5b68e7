#include "editorrun.h"

#include "modalanswerer.h"

#include <QFile>
#include <QPushButton>
#include <QTest>
#include <iostream>
#include <memory>
#include <streambuf>

namespace {

// Drops everything written to it: the thousands of loads print many thousand console lines.
class NullBuffer : public std::streambuf
{
protected:
    int overflow(int character) override { return traits_type::not_eof(character); }
};

class SilencedConsole
{
public:
    SilencedConsole() : m_out(std::cout.rdbuf(&m_null)), m_err(std::cerr.rdbuf(&m_null)) {}
    ~SilencedConsole()
    {
        std::cout.rdbuf(m_out);
        std::cerr.rdbuf(m_err);
    }
    SilencedConsole(const SilencedConsole &) = delete;
    SilencedConsole &operator=(const SilencedConsole &) = delete;

private:
    NullBuffer m_null;
    std::streambuf *m_out;
    std::streambuf *m_err;
};

void press(MainWindow &window, const char *button, const ModalAnswerer::Handler &dialog)
{
    ModalAnswerer answerer;
    answerer.expect(dialog);
    QTest::mouseClick(window.findChild<QPushButton *>(QString::fromLatin1(button)), Qt::LeftButton);
}

} // namespace

EditorResave resaveInFreshWindow(const lumarex::RecordBytes &record)
{
    return resaveAfterLoads({record});
}

EditorResave resaveAfterLoads(const std::vector<lumarex::RecordBytes> &records)
{
    SilencedConsole silenced;
    EditorResave resave;
    MainWindow window;
    for (const lumarex::RecordBytes &record : records) {
        // The load reads a 1024-byte buffer; the record is its start.
        unsigned char buffer[1024] = {};
        std::copy(record.begin(), record.end(), buffer);
        resave.outcome = window.restoreFromFileBytes(buffer);
    }
    if (resave.outcome == MainWindow::LoadOutcome::Restored)
        resave.bytes = window.recordFromForm().bytes();
    return resave;
}

EditorResave loadEditSave(const lumarex::RecordBytes &record,
                          const std::function<void(MainWindow &)> &edit)
{
    SilencedConsole silenced;
    EditorResave resave;
    MainWindow window;
    unsigned char buffer[1024] = {};
    std::copy(record.begin(), record.end(), buffer);
    resave.outcome = window.restoreFromFileBytes(buffer);
    if (resave.outcome != MainWindow::LoadOutcome::Restored)
        return resave;
    edit(window);
    resave.bytes = window.recordFromForm().bytes();
    return resave;
}

QByteArray resaveThroughFiles(const QByteArray &file, const QString &folder)
{
    const QString loaded = folder + QStringLiteral("/LXCONFIG.BIN");
    const QString saved = folder + QStringLiteral("/RESAVED.BIN");
    QFile input(loaded);
    if (!input.open(QIODevice::WriteOnly) || input.write(file) != file.size())
        return {};
    input.close();

    SilencedConsole silenced;
    MainWindow window;
    window.show();
    press(window, "btnReadConf", ModalAnswerer::chooseFile(loaded));
    press(window, "btnSetConf", ModalAnswerer::chooseFile(saved));
    QFile output(saved);
    if (!output.open(QIODevice::ReadOnly))
        return {};
    return output.readAll();
}

QStringList differingFields(const lumarex::RecordBytes &editor, const lumarex::RecordBytes &model)
{
    QStringList lines;
    const auto editorRecord = lumarex::ConfigRecord::fromBytes(editor.data(), editor.size());
    const auto modelRecord = lumarex::ConfigRecord::fromBytes(model.data(), model.size());
    for (const lumarex::FieldInfo &info : lumarex::fieldTable()) {
        for (int element = 0; element < info.elementCount(); ++element) {
            const int offset = info.offset + element * info.elementWidth();
            const bool differs =
                !std::equal(editor.begin() + offset, editor.begin() + offset + info.elementWidth(),
                            model.begin() + offset);
            if (!differs)
                continue;
            QString line =
                QStringLiteral("%1 (offset %2").arg(QString::fromLatin1(info.name)).arg(offset);
            if (info.elementCount() > 1)
                line += QStringLiteral(", element %1").arg(element);
            line += QStringLiteral("): editor %1, model %2")
                        .arg(editorRecord.value(info.field, element))
                        .arg(modelRecord.value(info.field, element));
            lines << line;
        }
    }
    return lines;
}
