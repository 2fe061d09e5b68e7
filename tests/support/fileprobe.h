#pragma once

// What a command did to the files it was given: their contents, and descriptors left open.

#include <QMap>
#include <QString>

// Every file and folder below root by relative path: a file's SHA-256 in hex, a folder "dir".
QMap<QString, QString> treeFingerprint(const QString &root);

// How many descriptors of this process are open on path.
int descriptorsOpenOn(const QString &path);
