#!/usr/bin/env python3
"""Copies a PDB of GNU ld without what the moment and the machine have put into it.

    pdb.py FROM TO BUILD-FOLDER

A PDB is a container of streams in blocks. The date in stream 1 becomes SOURCE_DATE_EPOCH; what ties the PDB to its DLL
is the identifier behind it, which is made of the DLL's contents. Stream 3 lists the objects that were linked by their
whole paths: the build folder's becomes "pvWapi/build". What each object has in a stream of its own is left out: it is
nothing but where the linker ran, as the compiler describes lines and types in another form.
"""
import os
import struct
import sys
from pathlib import Path

MAGIC = b"Microsoft C/C++ MSF 7.00\r\n\x1aDS\0\0\0"
NONE = 0xFFFFFFFF
INFO, OBJECTS = 1, 3
HEADER = 64  # of stream 3, and of each object in it


def numbers(data, at, count):
    return struct.unpack_from(f"<{count}I", data, at)


def blocks_for(size, block_size):
    return -(-size // block_size)


def read_streams(data):
    """The directory, in blocks itself, has the number of streams, their sizes and their blocks."""
    block_size, _, _, directory_size, _, directory_map = numbers(data, len(MAGIC), 6)

    def joined(blocks, size):
        return b"".join(data[block * block_size : (block + 1) * block_size] for block in blocks)[:size]

    at = directory_map * block_size
    directory = joined(numbers(data, at, blocks_for(directory_size, block_size)), directory_size)
    (count,) = numbers(directory, 0, 1)
    sizes = [0 if size == NONE else size for size in numbers(directory, 4, count)]
    at = 4 + 4 * count
    streams = []
    for size in sizes:
        blocks = numbers(directory, at, blocks_for(size, block_size))
        at += 4 * len(blocks)
        streams.append(joined(blocks, size))
    return block_size, streams


class Blocks:
    """Blocks in their order. The second and third of each `size` blocks belong to the maps of what is free."""

    def __init__(self, size):
        self.size = size
        self.contents = [b""]

    def add(self, data):
        taken = []
        for at in range(0, len(data), self.size):
            while len(self.contents) % self.size in (1, 2):
                self.contents.append(b"")
            taken.append(len(self.contents))
            self.contents.append(data[at : at + self.size])
        return taken

    def fill_maps(self):
        """A bit a block, set where the block is free: those behind the end alone."""
        while len(self.contents) % self.size in (1, 2):
            self.contents.append(b"")
        count = len(self.contents)
        free = bytearray(b"\xff" * blocks_for(count, 8 * self.size) * self.size)
        for block in range(count):
            free[block // 8] &= ~(1 << block % 8)
        for number in range(blocks_for(count, self.size)):
            part = bytes(free[number * self.size : (number + 1) * self.size]) or b"\xff" * self.size
            for block in (number * self.size + 1, number * self.size + 2):
                if block < count:
                    self.contents[block] = part


def write_streams(block_size, streams):
    blocks = Blocks(block_size)
    taken = [blocks.add(stream) for stream in streams]
    directory = struct.pack(f"<{1 + len(streams)}I", len(streams), *map(len, streams))
    directory += b"".join(struct.pack(f"<{len(places)}I", *places) for places in taken)
    places = blocks.add(directory)
    (place,) = blocks.add(struct.pack(f"<{len(places)}I", *places))
    blocks.fill_maps()
    head = struct.pack("<6I", block_size, 1, len(blocks.contents), len(directory), 0, place)
    blocks.contents[0] = MAGIC + head
    return b"".join(content.ljust(block_size, b"\0") for content in blocks.contents)


def objects_without(folder, stream):
    """Stream 3 with other paths, and the streams that it names no more."""
    (size,) = numbers(stream, 24, 1)
    at, end, left_out, listed = HEADER, HEADER + size, [], b""
    while at < end:
        head = bytearray(stream[at : at + HEADER])
        module, path, _ = stream[at + HEADER : end].split(b"\0", 2)
        at = (at + HEADER + len(module) + len(path) + 2 + 3) & ~3
        (own,) = struct.unpack_from("<H", head, 34)
        if own != 0xFFFF:
            left_out.append(own)
        struct.pack_into("<HIII", head, 34, 0xFFFF, 0, 0, 0)
        names = b"".join(name.replace(folder, b"pvWapi/build") + b"\0" for name in (module, path))
        listed += head + names.ljust((len(names) + 3) & ~3, b"\0")
    header = bytearray(stream[:HEADER])
    struct.pack_into("<I", header, 24, len(listed))
    return bytes(header) + listed + stream[end:], left_out


def main(source, target, folder):
    data = source.read_bytes()
    if not data.startswith(MAGIC):
        sys.exit(f"{source} is no PDB")
    block_size, streams = read_streams(data)
    info = bytearray(streams[INFO])
    struct.pack_into("<I", info, 4, int(os.environ["SOURCE_DATE_EPOCH"]))
    streams[INFO] = bytes(info)
    streams[OBJECTS], left_out = objects_without(folder.encode(), streams[OBJECTS])
    for stream in left_out:
        streams[stream] = b""
    target.write_bytes(write_streams(block_size, streams))


if __name__ == "__main__":
    main(Path(sys.argv[1]), Path(sys.argv[2]), sys.argv[3])
