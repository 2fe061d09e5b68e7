#include "sizedfiles.h"

QVector<SizedFile> sizedFiles(const QByteArray &validFile)
{
    const auto grown = [&validFile](int size) {
        return validFile + QByteArray(size - validFile.size(), '\xFF');
    };
    return {{"0 bytes", QByteArray()},        {"1 byte", validFile.left(1)},
            {"12 bytes", validFile.left(12)}, {"166 bytes", validFile.left(166)},
            {"167 bytes", validFile},         {"168 bytes", grown(168)},
            {"1024 bytes", grown(1024)},      {"1025 bytes", grown(1025)},
            {"1 MiB", grown(1 << 20)}};
}
