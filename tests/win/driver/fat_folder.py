#!/usr/bin/python3
"""Shows the root folder of a FAT volume in an image file as a folder, while others write the image.

    fat_folder.py IMAGE FOLDER

Nothing is remembered from one call to the next: what was written to the image itself, by a format or
as a boot sector, is seen at once, and so is what was written to the files. FAT12 and FAT16, no folders
within. An image without a volume is a drive without a medium. Ends when the folder is unmounted.

Debian packages needed: fuse, python3-fusepy.
"""
import errno
import os
import stat
import struct
import sys

from fusepy import FUSE, FuseOSError, Operations

SECTOR = 512
ENTRY = 32
DELETED = 0xE5
LONG_NAME = 0x0F
LABEL = 0x08
SHORT_EXTRA = '$%\'-_@~`!(){}^#&'


class Volume:
    """The volume as it is now."""

    def __init__(self, file):
        self.file = file
        head = os.pread(file, SECTOR, 0)
        if len(head) < SECTOR or head[510:] != b'\x55\xaa':
            raise FuseOSError(errno.EIO)
        (sector, cluster, reserved, self.tables, self.root_entries, sectors, _, self.table_sectors
         ) = struct.unpack_from('<HBHBHHBH', head, 11)
        if sector != SECTOR or not cluster or not self.tables:
            raise FuseOSError(errno.EIO)
        sectors = sectors or struct.unpack_from('<I', head, 32)[0]
        self.cluster = cluster * SECTOR
        self.table_at = reserved * SECTOR
        self.root_at = self.table_at + self.tables * self.table_sectors * SECTOR
        self.data_at = self.root_at + self.root_entries * ENTRY
        self.clusters = (sectors * SECTOR - self.data_at) // self.cluster
        self.wide = self.clusters >= 4085
        self.end = 0xFFFF if self.wide else 0xFFF
        self.table = bytearray(os.pread(file, self.table_sectors * SECTOR, self.table_at))
        self.root = bytearray(os.pread(file, self.root_entries * ENTRY, self.root_at))

    def next(self, cluster):
        if self.wide:
            return struct.unpack_from('<H', self.table, cluster * 2)[0]
        pair = struct.unpack_from('<H', self.table, cluster * 3 // 2)[0]
        return pair >> 4 if cluster & 1 else pair & 0xFFF

    def set_next(self, cluster, value):
        if self.wide:
            at = cluster * 2
            struct.pack_into('<H', self.table, at, value)
        else:
            at = cluster * 3 // 2
            pair = struct.unpack_from('<H', self.table, at)[0]
            pair = pair & 0x000F | value << 4 if cluster & 1 else pair & 0xF000 | value
            struct.pack_into('<H', self.table, at, pair)
        for copy in range(self.tables):
            os.pwrite(self.file, self.table[at:at + 2],
                      self.table_at + copy * self.table_sectors * SECTOR + at)

    def chain(self, first):
        chain = []
        while 2 <= first < self.clusters + 2 and len(chain) <= self.clusters:
            chain.append(first)
            first = self.next(first)
        return chain

    def free(self):
        return [c for c in range(2, self.clusters + 2) if self.next(c) == 0]

    def place(self, cluster):
        return self.data_at + (cluster - 2) * self.cluster

    def files(self):
        """Name to (number of the first of its entries, number of its own entry)."""
        files, long_name, first = {}, '', None
        for number in range(self.root_entries):
            entry = self.root[number * ENTRY:(number + 1) * ENTRY]
            if entry[0] == 0:
                break
            if entry[0] == DELETED:
                long_name, first = '', None
            elif entry[11] & 0x3F == LONG_NAME:
                if entry[0] & 0x40:
                    long_name, first = '', number
                units = (entry[1:11] + entry[14:26] + entry[28:32]).decode('utf-16-le')
                long_name = units.split('\0')[0] + long_name
            else:
                if not entry[11] & LABEL:
                    files[long_name or short_text(entry)] = (
                        number if first is None else first, number)
                long_name, first = '', None
        return files

    def find(self, name):
        for present, numbers in self.files().items():
            if present.lower() == name.lower():
                return numbers
        raise FuseOSError(errno.ENOENT)

    def first_and_size(self, number):
        return struct.unpack_from('<HI', self.root, number * ENTRY + 26)

    def put_entry(self, number, entry):
        self.root[number * ENTRY:(number + 1) * ENTRY] = entry
        os.pwrite(self.file, bytes(entry), self.root_at + number * ENTRY)

    def set_first_and_size(self, number, first, size):
        entry = self.root[number * ENTRY:(number + 1) * ENTRY]
        struct.pack_into('<HI', entry, 26, first, size)
        self.put_entry(number, entry)

    def create(self, name):
        entries = entries_of(name, {bytes(self.root[n * ENTRY:n * ENTRY + 11])
                                    for _, n in self.files().values()})
        run = 0
        for number in range(self.root_entries):
            run = run + 1 if self.root[number * ENTRY] in (0, DELETED) else 0
            if run == len(entries):
                for offset, entry in enumerate(entries):
                    self.put_entry(number - run + 1 + offset, entry)
                return
        raise FuseOSError(errno.ENOSPC)

    def remove(self, name):
        first, last = self.find(name)
        self.resize(last, 0)
        for number in range(first, last + 1):
            entry = self.root[number * ENTRY:(number + 1) * ENTRY]
            entry[0] = DELETED
            self.put_entry(number, entry)

    def resize(self, number, size):
        """The clusters of a file of this size; the file's entry says so, too."""
        first, _ = self.first_and_size(number)
        chain = self.chain(first)
        wanted = (size + self.cluster - 1) // self.cluster
        added = self.free()[:max(0, wanted - len(chain))]
        if len(chain) + len(added) < wanted:
            raise FuseOSError(errno.ENOSPC)
        for cluster in chain[wanted:]:
            self.set_next(cluster, 0)
        kept = chain[:wanted] + added
        for cluster, following in zip(kept, kept[1:] + [self.end]):
            if self.next(cluster) != following:
                self.set_next(cluster, following)
        self.set_first_and_size(number, kept[0] if kept else 0, size)
        return kept

    def pieces(self, chain, offset, length):
        """Where these bytes of a file lie: places and lengths."""
        while length > 0:
            within = offset % self.cluster
            count = min(length, self.cluster - within)
            yield self.place(chain[offset // self.cluster]) + within, count
            offset, length = offset + count, length - count


def short_text(entry):
    base, end = entry[0:8].decode('latin1').rstrip(), entry[8:11].decode('latin1').rstrip()
    base = base.lower() if entry[12] & 0x08 else base
    end = end.lower() if entry[12] & 0x10 else end
    return base + ('.' + end if end else '')


def entries_of(name, taken):
    """The entries of a new file: a short name alone where one has the room, as Windows does it."""
    base, _, end = name.rpartition('.') if '.' in name else (name, '', '')
    parts = (base, end)
    fits = (0 < len(base) <= 8 and len(end) <= 3 and
            all(c.isascii() and (c.isalnum() or c in SHORT_EXTRA) for c in base + end) and
            all(part in (part.lower(), part.upper()) for part in parts))
    short = base.upper().ljust(8)[:8] + end.upper().ljust(3)[:3]
    number = 0
    while not fits and (number == 0 or short.encode() in taken):
        number += 1
        tail = '~%d' % number
        kept = ''.join(c for c in base.upper() if c.isalnum())[:8 - len(tail)] + tail
        short = kept.ljust(8) + ''.join(c for c in end.upper() if c.isalnum())[:3].ljust(3)
    case = (0x08 if fits and base != base.upper() else 0) | (
        0x10 if fits and end != end.upper() else 0)
    own = bytearray(short.encode() + bytes([0x20, case]) + bytes(19))
    if fits:
        return [own]
    check = 0
    for byte in own[:11]:
        check = ((check & 1) << 7) + (check >> 1) + byte & 0xFF
    units = name.encode('utf-16-le')
    if len(units) % 26:
        units = (units + b'\0\0').ljust((len(units) + 27) // 26 * 26, b'\xff')
    result, count = [own], len(units) // 26
    for order in range(1, count + 1):
        piece = units[(order - 1) * 26:order * 26]
        head = bytes([order | (0x40 if order == count else 0)])
        result.insert(0, bytearray(head + piece[:10] + bytes([LONG_NAME, 0, check]) +
                                   piece[10:22] + b'\0\0' + piece[22:]))
    return result


class FatFolder(Operations):
    def __init__(self, image):
        self.file = os.open(image, os.O_RDWR)

    def volume(self):
        return Volume(self.file)

    def getattr(self, path, fh=None):
        if path == '/':
            return {'st_mode': stat.S_IFDIR | 0o777, 'st_nlink': 2}
        volume = self.volume()
        size = volume.first_and_size(volume.find(path[1:])[1])[1]
        return {'st_mode': stat.S_IFREG | 0o777, 'st_nlink': 1, 'st_size': size,
                'st_ino': 1000 + volume.find(path[1:])[1]}

    def readdir(self, path, fh):
        return ['.', '..'] + list(self.volume().files())

    def create(self, path, mode, fi=None):
        self.volume().create(path[1:])
        return 0

    def unlink(self, path):
        self.volume().remove(path[1:])

    def truncate(self, path, length, fh=None):
        volume = self.volume()
        volume.resize(volume.find(path[1:])[1], length)

    def read(self, path, size, offset, fh):
        volume = self.volume()
        first, length = volume.first_and_size(volume.find(path[1:])[1])
        size = max(0, min(size, length - offset))
        return b''.join(os.pread(self.file, count, place)
                        for place, count in volume.pieces(volume.chain(first), offset, size))

    def write(self, path, data, offset, fh):
        volume = self.volume()
        number = volume.find(path[1:])[1]
        chain = volume.resize(number, max(volume.first_and_size(number)[1], offset + len(data)))
        done = 0
        for place, count in volume.pieces(chain, offset, len(data)):
            os.pwrite(self.file, data[done:done + count], place)
            done += count
        return len(data)

    def statfs(self, path):
        volume = self.volume()
        return {'f_bsize': volume.cluster, 'f_frsize': volume.cluster, 'f_blocks': volume.clusters,
                'f_bfree': len(volume.free()), 'f_bavail': len(volume.free()), 'f_namemax': 255}

    def chmod(self, path, mode):
        return 0

    def chown(self, path, uid, gid):
        return 0

    def utimens(self, path, times=None):
        return 0

    def fsync(self, path, datasync, fh):
        return 0


if __name__ == '__main__':
    FUSE(FatFolder(sys.argv[1]), sys.argv[2], nothreads=True, direct_io=True, big_writes=True,
         attr_timeout=0, entry_timeout=0, negative_timeout=0, fsname='fat_folder')
