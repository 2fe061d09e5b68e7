#pragma once

// lxconfig driven from /bin/sh, for what a test cannot say through QProcess alone: file names
// that are not UTF-8, closed or full standard streams, file-size limits, private mount
// namespaces and strace. The script finds lxconfig in $LX and runs in the workspace's folder.

#include "workspace.h"

#include <QByteArray>
#include <QString>

struct ShellResult
{
    int exitCode; // -1 when the shell did not exit normally
    QByteArray out;
    QByteArray err;
};

ShellResult runShell(const Workspace &workspace, const QString &script);

// Prefix for a script that runs lxconfig under strace: LeakSanitizer cannot work in a traced
// process and ends it, so a sanitizer build checks for leaks everywhere but there.
inline constexpr const char *kLeakCheckOffUnderStrace =
    "export ASAN_OPTIONS=\"${ASAN_OPTIONS:+$ASAN_OPTIONS:}detect_leaks=0\"; ";

// How this machine lets a test mount a tmpfs of its own: the unshare command that opens a
// private mount namespace ("unshare --mount" as root, "unshare -rm" in a user namespace), or
// nothing with the reason in why.
QString mountNamespaceCommand(const Workspace &workspace, QString &why);

// The names of the workspace's folder entries (hidden ones too), sorted.
QStringList folderEntries(const Workspace &workspace, const QString &folder = ".");
