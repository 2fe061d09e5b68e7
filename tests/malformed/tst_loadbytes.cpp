// The checks of "Read from file" after its one read (restoreFromFileBytes), on every single-bit
// corruption of a valid file and on seeded random buffers. Each corruption must be refused as
// another version (the magic or the version changed) or fail the checksum (any other byte),
// print exactly its lines, and leave the form as it was. One window serves every case: a case
// that changed the form would fail its own comparison.

#include "consolecapture.h"
#include "formprobe.h"
#include "loadexpectation.h"
#include "mainwindow.h"
#include "referencechecksum.h"
#include "storedsettings.h"

#include <QRandomGenerator>
#include <QTest>
#include <QtEndian>
#include <array>
#include <memory>

namespace {

using ReadBuffer = std::array<unsigned char, kReadBufferSize>;

ReadBuffer readBufferWith(const QByteArray &contents)
{
    ReadBuffer buffer{};
    std::copy_n(contents.cbegin(), qMin<int>(contents.size(), kReadBufferSize), buffer.begin());
    return buffer;
}

MainWindow::LoadOutcome outcomeOf(const Expectation &expected)
{
    return expected.versionDialog ? MainWindow::LoadOutcome::VersionRefused
                                  : MainWindow::LoadOutcome::ChecksumFailed;
}

} // namespace

class TestLoadBytes : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void cleanupTestCase();

    void singleBitFlip_data();
    void singleBitFlip();
    void randomBuffer_data();
    void randomBuffer();

private:
    QByteArray m_validFile;
    std::unique_ptr<ConsoleCapture> m_console;
    std::unique_ptr<MainWindow> m_window;
    VersionBox m_versionBox;
};

void TestLoadBytes::initTestCase()
{
    m_window = std::make_unique<MainWindow>();
    m_window->show();
    {
        const ConsoleCapture saveLines; // the save's own lines are not under test here
        m_validFile = storedSettingsFile(*m_window);
    }
    m_console = std::make_unique<ConsoleCapture>();
}

void TestLoadBytes::cleanupTestCase()
{
    m_window.reset();
    m_console.reset();
}

void TestLoadBytes::singleBitFlip_data()
{
    QTest::addColumn<QByteArray>("contents");
    QTest::addColumn<Expectation>("expected");

    for (int offset = 0; offset < m_validFile.size(); ++offset) {
        for (int bit = 0; bit < 8; ++bit) {
            QByteArray contents = m_validFile;
            contents[offset] = static_cast<char>(contents.at(offset) ^ (1 << bit));
            Expectation expected = checksumFailed(referenceChecksum(contents));
            if (offset < 4) // the magic
                expected = refused(kFormatVersion);
            else if (offset >= 8 && offset < 12) // the format version
                expected = refused(kFormatVersion ^ (1U << ((offset - 8) * 8 + bit)));
            QTest::addRow("offset %d bit %d", offset, bit) << contents << expected;
        }
    }
}

void TestLoadBytes::singleBitFlip()
{
    QFETCH(QByteArray, contents);
    QFETCH(Expectation, expected);
    const ReadBuffer buffer = readBufferWith(contents);
    const QStringList formBefore = formSnapshot(*m_window);
    m_console->clear();

    ModalAnswerer answerer;
    answerer.expect(versionDialogAnswer(expected, &m_versionBox));
    QCOMPARE(m_window->restoreFromFileBytes(buffer.data()), outcomeOf(expected));
    QCOMPARE(answerer.answered(), expected.versionDialog ? 1 : 0);

    QCOMPARE(m_console->out(), expected.out);
    QCOMPARE(m_console->err(), QStringList());
    QCOMPARE(m_console->unterminated(), QString());
    QCOMPARE(formSnapshot(*m_window), formBefore);
}

void TestLoadBytes::randomBuffer_data()
{
    QTest::addColumn<QByteArray>("contents");
    QTest::addColumn<Expectation>("expected");

    QRandomGenerator random(kFormatVersion);
    const QByteArray header = m_validFile.left(12);
    for (int i = 0; i < 200; ++i) {
        QByteArray contents(kReadBufferSize, '\0');
        for (char &byte : contents)
            byte = static_cast<char>(random.bounded(256));
        // Every other buffer gets the right header, to reach the checksum check.
        if (i % 2 == 1) {
            contents.replace(0, header.size(), header);
            const quint16 computed = referenceChecksum(contents);
            QVERIFY(computed != qFromLittleEndian<quint16>(contents.constData() + 165));
            QTest::addRow("header and random %d", i) << contents << checksumFailed(computed);
        } else {
            contents[0] = 'X';
            const auto version = qFromLittleEndian<quint32>(contents.constData() + 8);
            QTest::addRow("random %d", i) << contents << refused(version);
        }
    }
}

void TestLoadBytes::randomBuffer()
{
    singleBitFlip();
}

QTEST_MAIN(TestLoadBytes)
#include "tst_loadbytes.moc"
