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


# Messages of the kernel are in the order of the machine.
def attribute(kind, content):
    return (struct.pack("=HH", 4 + len(content), kind) + content).ljust((len(content) + 7) & ~3, b"\0")


def message(kind, head, *attributes):
    body = head + b"".join(attributes)
    return struct.pack("=IHHII", 16 + len(body), kind, 2, 1, 0) + body


def netlink():
    link = struct.pack("=BxHiII", 0, 1, 7, 0x1003, 0)
    number = struct.Struct("=I").pack
    vxlan = attribute(18, attribute(1, b"vxlan\0") + attribute(2, attribute(1, number(42)) + attribute(3, number(3))))
    names = attribute(52, attribute(53, b"front-left\0"))
    a_link = message(16, link, attribute(3, b"swp7\0"), attribute(4, number(9000)), attribute(16, b"\x06"),
                     attribute(1, bytes([2, 0, 0, 0, 0, 7])), attribute(23, bytes(192)), vxlan, names)
    bridge = message(16, struct.pack("=BxHiII", 7, 1, 7, 0x1003, 0), attribute(3, b"swp7\0"),
                     attribute(26, attribute(2, struct.pack("=HH", 8, 10)) + attribute(2, struct.pack("=HH", 16, 20))),
                     attribute(12, attribute(1, b"\x03")))
    address = message(20, struct.pack("=BBBBi", 2, 24, 128, 0, 7), attribute(1, bytes([192, 0, 2, 1])),
                      attribute(2, bytes([192, 0, 2, 1])), attribute(3, b"swp7\0"), attribute(8, number(128)))
    neighbor = message(28, struct.pack("=BxHiHBB", 2, 0, 7, 2, 0, 1), attribute(1, bytes([192, 0, 2, 9])),
                       attribute(2, bytes([2, 0, 0, 0, 0, 9])), attribute(3, bytes(16)))
    entry = message(28, struct.pack("=BxHiHBB", 7, 0, 7, 0x80, 2, 0), attribute(2, bytes([2, 0, 0, 0, 0, 9])),
                    attribute(5, struct.pack("=H", 10)), attribute(9, number(3)))
    modes = message(0x20, bytes([4, 1, 0, 0]), attribute(1, attribute(1, number(7))), attribute(5, number(25000)),
                    attribute(6, b"\x01"))
    return {"link": a_link, "bridge-port": bridge, "address": address, "neighbor": neighbor, "entry": entry,
            "link-modes": modes, "removed": message(17, link, attribute(3, b"swp7\0")), "several": a_link + neighbor,
            "lying": number(0xFFFFFFFF) + a_link[4:], "cut": a_link[:70]}


def frame():
    def request(payload, flags=0):
        return be32(len(payload)) + bytes([4, flags, 0, 0]) + be32(9, 0xFE000000, 179, 7) + payload

    hello = b"pmsh" + be32(1, 3) + b"1.2" + be32(10) + b"/dev/pts/3"
    greeting = be32(len(hello)) + bytes([1, 0, 0, 0]) + bytes(16) + hello
    return {"hello": greeting, "request": request(be32(PORT)), "several": greeting + request(b"") + request(be32(PORT)),
            "long": request(b"one", 1) + request(b"two", 1) + request(b"three"), "cut": request(be32(PORT))[:26],
            "lying": be32(0xFFFFFFFF) + request(b"")[4:]}


def switch_file():
    head = b"switch: {name: small, chassis-type: 10, slots: 4, base-mac: '02:00:00:00:00:f0', uptime: 10m}\n"
    cards = (b"profiles: {plain: {speeds: [100, 1000], duplex: [full]}, optical: {speeds: [10000], transceiver: 10Gbase-SR}}\n"
             b"cards: [{slot: 1, model: COPPER, profile: plain}, {slot: 2, model: OPTICS, type: 7, profile: optical}]\n")
    ports = b"interfaces:\n  - &first {range: ethernet 1/1-4, speed: 1000, traffic: {in: {mbps: 10}}}\n  - {range: ethernet 2/1}\n"
    rest = b"users: [{name: ann, vsans: 1-10}]\nvlans: [{id: 10, name: lab}]\nmanagement: {device: eth0}\n"
    return {"small": head, "ports": head + cards + ports + rest, "alias": head + cards + ports + b"  - *first\n",
            "two": head + b"---\n" + head, "odd": b"  : \n,", "deep": b"[" * 65}


def journal():
    def number(value):
        return bytes([value is not None]) + be32(value or 0)

    def image(if_index, settings=b"", count=0, changes=(), created=b"\0"):
        head = be32(if_index) + bytes([1, 0, 0]) + created + (be32(0) if created == b"\1" else b"")
        link = bytes([0, 1, 9, 1, 1, 9]) + b"".join(map(number, (1, 1000, 2, None, 1000, 1800000000)))
        known = be32(0, len(changes)) + b"".join(be32(at) + bytes([state]) for at, state in changes)
        return head + be32(count) + settings + be32(0) + link + known + number(1800000001)

    def change(*images, waits=0, over=(), startup=b"\0"):
        commits = bytes([waits]) + be32(len(over)) + b"".join(be32(0, it) for it in over)
        return commits + be32(len(images)) + b"".join(images) + startup

    loopback = (20 << 26) | 77
    state = bytes([1]) + be32(1) + b"\2"
    gone = be32(loopback) + bytes([0, 1, 0])
    return {"setting": change(image(PORT, state, 1, [(1800000000, 2), (1800000009, 1)])), "waits": change(image(PORT), waits=1),
            "over": change(over=[1], startup=b"\1" + be32(1, PORT)), "created": change(image(loopback, created=b"\1")), "deleted": change(gone),
            "cut": change(image(PORT))[:30], "lying": bytes([0]) + be32(0, 0xFFFFFFFF)}


def frame_capture():
    def part(kind, payload=b"", token=0, to=(0, 0, 0), size=None):
        return be32(len(payload) if size is None else size) + bytes([kind, 0, 0, 0]) + be32(token, *to) + payload

    def record(time, sender, content, client=1, size=None):
        head = be32(len(content) if size is None else size, 0) + bytes([sender, 0, 0, 0])
        return head + be32(0, client, 0, time, 0, time) + content

    head = b"pmshfrm\n" + be32(1, 1)
    hello = record(1, 1, part(1, b"pmsh" + be32(1, 3) + b"1.2" + be32(0)))
    welcome = record(2, 2, part(2, b"pmsh" + be32(1, 3) + b"1.2" + be32(3) + b"lab" + be32(77) + bytes(9)))
    asked = record(3, 1, part(4, b"", 5, (0xFE000000, 202, 5)))
    answer, rejected = record(4, 2, part(5, b"facts", 5)), record(4, 2, part(6, b"", 5))
    news = record(5, 2, part(8, b"", 1))
    return {"answered": head + hello + welcome + asked + answer + news, "rejected": head + hello + welcome + asked + rejected,
            "unasked": head + hello + welcome + answer, "earlier": head + welcome + hello,
            "lying": head + record(1, 1, part(1), size=1000), "cut": head + hello[:40], "foreign": b"\x7fELF" + bytes(12)}


for make in (diagnostics, frame, frame_capture, journal, listing, members, misc_info, module_resources, netlink, switch_file, tlv,
             transceiver, vlan_set):
    folder = ROOT / make.__name__
    folder.mkdir(parents=True, exist_ok=True)
    for name, content in make().items():
        (folder / name).write_bytes(content)
