#!/usr/bin/env python3
"""Writes the seeds: small answers as services would give them, made by hand from their layouts."""
import pathlib
import struct

ROOT = pathlib.Path(__file__).parent / "seeds"
PORT = 0x08000000


def be16(*numbers):
    return struct.pack(f">{len(numbers)}H", *numbers)


def be32(*numbers):
    return struct.pack(f">{len(numbers)}I", *(number & 0xFFFFFFFF for number in numbers))


def node(category, number, values, children=()):
    head = be32(category, number) + be16(len(values), len(children))
    tlvs = b"".join(be16(kind, 4) + be32(value) for kind, value in values)
    return head + tlvs + b"".join(children)


def text(words, width):
    return words.encode().ljust(width)


def module_resources():
    port = node(5, 0x01200000, [(257, 16), (266, 4), (259, 4000), (260, 1)])
    group = node(4, 1, [(257, 2000), (264, 1900)], [port, port])
    tree = node(1, 2, [], [node(2, 0, [(257, 2000), (264, 1900)], [node(3, 1, [(259, 12800)], [group])])])
    return {"tree": be32(0) + tree, "error": be32(1), "wrong-module": be32(0) + node(1, 7, []), "empty": b""}


def misc_info():
    head = bytes([0, 1]) + be32(PORT, 0) + be16(1)
    good = be16(1, 9) + bytes([0, 1, 0, 0, 1, 1, 1, 1, 104])
    return {"good": head + good, "cut": head + good[:7], "other-port": bytes([0, 1]) + be32(1, 0) + be16(0),
            "lying": bytes([0, 1]) + be32(PORT, 0) + be16(65535) + be16(2, 65535)}


def sfp_record():
    page = bytearray(128)
    page[0:3] = bytes([3, 4, 7])
    page[12], page[16], page[17] = 103, 8, 3
    page[20:36], page[40:56] = text("LIGHTWORKS", 16), text("LW-10G-SR", 16)
    page[56:60], page[68:84] = text("A1", 4), text("LW1", 16)
    trailer = be32(10000, 1000) + bytes([0, 1, 0, 0])
    return be32(PORT, 0) + bytes([1]) + (bytes(page) + trailer).ljust(257, b"\0") + bytes([1])


def transceiver():
    record = sfp_record()
    counted = be32(0, 1) + record
    return {"record": record, "answer": counted, "cut": counted[:60], "x2": record[:-1] + bytes([2])}


def diagnostics():
    values = be32(PORT, 0, 1, 34000, 3295000, 6600, 590, 420, 1, 0) + be32(*([256] * 8)) + be32(0, 0, 0, 1, 0)
    limits = be32(75000, -5000, 70000, 0, 3630000, 2970000, 3465000, 3135000) + be32(*([1000] * 12))
    return {"internal": values + limits, "dark": values[:24] + be32(0, 0) + values[32:] + limits, "nothing": b""}


def listing():
    return {"two": be32(2, PORT, PORT + 0x1000), "none": be32(0), "lying": be32(0xFFFFFFFF, PORT)}


def members():
    return {"two": be32(0, 2, PORT, PORT + 0x1000), "none": be32(0, 0), "lying": be32(0, 0xFFFFFFFF, PORT)}


def tlv():
    seeds = {"name": bytes([6, 81]) + text("to the lab", 81), "empty": bytes([9, 0])}
    for kind in (1, 2, 9, 15, 29, 83, 84, 255):
        seeds[f"type-{kind}"] = bytes([kind, 8]) + bytes(range(8))
    return seeds


def vlan_set():
    head = be32(PORT) + be16(1, 10)
    return {"some": head + be32(512) + bytes([0x60]) + bytes(511), "odd": head + be32(512) + b"\x55" * 512,
            "all": head + be32(0xFFFFFFFF) + b"\xff" * 512, "none": head + be32(0)}


for make in (diagnostics, listing, members, misc_info, module_resources, tlv, transceiver, vlan_set):
    folder = ROOT / make.__name__
    folder.mkdir(parents=True, exist_ok=True)
    for name, content in make().items():
        (folder / name).write_bytes(content)
