#!/usr/bin/python3
"""A memory card that lies, as a file system in user space (Debian's python3-fusepy).

Usage: lyingcard.py MODE MOUNTPOINT [NAME=FILE...]

The card starts with the files given (NAME on the card, FILE's bytes) and keeps everything in
memory, in one folder. It prints "ready" on standard output once it is mounted, and serves in
the foreground until it is unmounted. MODE is what it does wrong:

  honest     nothing: the card keeps what is written (the control case)
  stale      accepts every write, but gives back the bytes that were there before (zeros where
             there were none), as worn or fake cards do
  failsync   fails every fsync and every flush of a file written to with EIO
  readonly   turns read-only after the first write: every later change fails with EROFS
  vanish     the card is pulled during the first write: the daemon exits at once
"""

import errno
import os
import stat
import sys
import time

from fusepy import FUSE, FuseOSError, Operations


class File:
    def __init__(self, data=b""):
        self.data = bytearray(data)  # what the computer wrote
        self.kept = bytearray(data)  # what the medium gives back
        self.mode = 0o644
        self.uid = os.getuid()
        self.gid = os.getgid()
        self.times = time.time()
        self.links = 1
        self.dirty = False


class LyingCard(Operations):
    def __init__(self, mode, files):
        self.mode = mode
        self.files = {"/" + name: File(data) for name, data in files.items()}
        self.turned = False  # readonly: the first write has happened

    def init(self, path):
        print("ready", flush=True)

    def _file(self, path):
        if path not in self.files:
            raise FuseOSError(errno.ENOENT)
        return self.files[path]

    def _change(self):
        if self.mode == "readonly" and self.turned:
            raise FuseOSError(errno.EROFS)

    def getattr(self, path, fh=None):
        if path == "/":
            return {"st_mode": stat.S_IFDIR | 0o755, "st_nlink": 2, "st_uid": os.getuid(),
                    "st_gid": os.getgid(), "st_size": 4096}
        f = self._file(path)
        return {"st_mode": stat.S_IFREG | f.mode, "st_nlink": f.links, "st_uid": f.uid,
                "st_gid": f.gid, "st_size": len(f.data), "st_atime": f.times,
                "st_mtime": f.times, "st_ctime": f.times}

    def readdir(self, path, fh):
        return [".", ".."] + [name[1:] for name in self.files]

    def statfs(self, path):
        used = sum(len(f.data) for f in self.files.values()) // 4096 + 1
        return {"f_bsize": 4096, "f_frsize": 4096, "f_blocks": 16384, "f_bfree": 16384 - used,
                "f_bavail": 16384 - used, "f_files": 1024, "f_ffree": 1024, "f_namemax": 255}

    def create(self, path, mode, fi=None):
        self._change()
        if path in self.files:
            raise FuseOSError(errno.EEXIST)
        self.files[path] = File()
        self.files[path].mode = mode & 0o7777
        return 0

    def open(self, path, flags):
        f = self._file(path)
        if flags & os.O_TRUNC:
            self.truncate(path, 0)
        return 0

    def read(self, path, size, offset, fh):
        f = self._file(path)
        given = bytes(f.kept[offset:offset + size])
        wanted = max(0, min(size, len(f.data) - offset))
        return given + bytes(wanted - len(given)) if len(given) < wanted else given[:wanted]

    def write(self, path, data, offset, fh):
        if self.mode == "vanish":
            os._exit(1)
        self._change()
        f = self._file(path)
        end = offset + len(data)
        if len(f.data) < end:
            f.data.extend(bytes(end - len(f.data)))
        f.data[offset:end] = data
        if self.mode != "stale":
            if len(f.kept) < end:
                f.kept.extend(bytes(end - len(f.kept)))
            f.kept[offset:end] = data
        f.dirty = True
        self.turned = True
        return len(data)

    def truncate(self, path, length, fh=None):
        self._change()
        f = self._file(path)
        del f.data[length:]
        f.data.extend(bytes(length - len(f.data)))
        if self.mode != "stale":
            f.kept[:] = f.data

    def _synced(self, path):
        f = self.files.get(path)
        if self.mode == "failsync" and f is not None and f.dirty:
            raise FuseOSError(errno.EIO)

    def flush(self, path, fh):
        self._synced(path)
        return 0

    def fsync(self, path, datasync, fh):
        self._synced(path)
        return 0

    def release(self, path, fh):
        return 0

    def chmod(self, path, mode):
        self._change()
        self._file(path).mode = mode & 0o7777
        return 0

    def chown(self, path, uid, gid):
        self._change()
        f = self._file(path)
        f.uid = uid if uid != 0xFFFFFFFF else f.uid
        f.gid = gid if gid != 0xFFFFFFFF else f.gid
        return 0

    def utimens(self, path, times=None):
        self._change()
        self._file(path).times = times[1] if times else time.time()
        return 0

    def rename(self, old, new):
        self._change()
        f = self._file(old)
        if new in self.files:
            self.files[new].links -= 1
        self.files[new] = f
        del self.files[old]
        return 0

    def link(self, target, source):
        self._change()
        if target in self.files:
            raise FuseOSError(errno.EEXIST)
        f = self._file(source)
        f.links += 1
        self.files[target] = f
        return 0

    def unlink(self, path):
        self._change()
        self._file(path).links -= 1
        del self.files[path]
        return 0


def main():
    mode, mountpoint = sys.argv[1], sys.argv[2]
    files = {}
    for given in sys.argv[3:]:
        name, source = given.split("=", 1)
        with open(source, "rb") as handle:
            files[name] = handle.read()
    FUSE(LyingCard(mode, files), mountpoint, foreground=True, nothreads=True,
         fsname="lyingcard")


if __name__ == "__main__":
    main()
