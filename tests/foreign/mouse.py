#!/usr/bin/env python3
# SPDX-FileCopyrightText: 2026 The Morlen authors
# SPDX-License-Identifier: MIT
"""A mouse on its cable, written from docs/protocol.md alone: a second opinion on that document.

    mouse.py FOLDER

Serves the emulated bus FOLDER and says "ready". Orders on its standard input, one a line, each answered by a line:

    flash          the flash of the profile in use, in hexadecimal
    set ADDR HEX   writes there as the mouse's own button would, and announces the item: "rate" or "stage"
    profile N      chooses a profile, with its notice

It unplugs itself at the end of its input. What a host must not do (an unsound report, a write to bytes that are the
mouse's own) is told on the standard error, and the exit status is then 1.
"""

import os
import selectors
import socket
import sys

REPORT_SIZE = 64
HEAD_SIZE = 7
PAYLOAD_SIZE = 56
REPORT_ID = 5
FLASH_SIZE = 6912
PROFILES = 4

OK, REFUSED = 0, 2

IDENTITY, DRIVER_STATUS, ON_LINE, BATTERY = 0x01, 0x02, 0x03, 0x04
FLASH_WRITE, FLASH_READ, CLEAR_SETTINGS, STATUS_CHANGED = 0x07, 0x08, 0x09, 0x0A
PAIRED_ADDRESS, BATTERY_OPTIMIZE, CONFIG_SELECT, CONFIG, VERSION = 0x0B, 0x0C, 0x0D, 0x0E, 0x12

# Vendor, product of a cable, release 1.05, interface 1, usage page of the settings, serial.
NAME = "1209-0001-0105-1-ff05-py"
CID, MID, KIND = 18, 6, 3

STAGE_ITEM, RATE_ITEM, EVERYTHING_ITEM = 0, 1, 2

# The bytes that are the mouse's own: address and size of each span.
OWN_SPANS = [(0x11, 11), (0x50, 4), (0x84, 28), (0xA7, 2), (0xA9, 7), (0xC4, 60)]
OWN_SPANS += [(0x100 + 32 * k + 31, 1) for k in range(16)]
OWN_SPANS += [(0x300 + 384 * k + 382, 2) for k in range(16)]


def crc8(data):
    crc = 0
    for byte in data:
        crc ^= byte
        for _ in range(8):
            crc = (crc << 1 ^ 0x07 if crc & 0x80 else crc << 1) & 0xFF
    return crc


def report(command, sequence, address=0, status=OK, payload=b""):
    head = bytes([REPORT_ID, command, sequence, address >> 8, address & 0xFF, len(payload), status])
    body = head + payload.ljust(PAYLOAD_SIZE, b"\0")
    return body + bytes([crc8(body)])


def factory_flash():
    flash = bytearray(FLASH_SIZE)
    for number, (address, size) in enumerate(OWN_SPANS):
        flash[address:address + size] = bytes([0xA0 + number % 64] * size)
    flash[0x00] = 1                    # 1,000 Hz
    flash[0x01] = 3                    # stages
    flash[0x04] = 1                    # the second one
    flash[0x05] = 3                    # 0.7 mm
    flash[0x06] = 8                    # ms of debounce
    flash[0x08] = 6                    # sleeps after 60 s
    flash[0x0F] = 0x100 - 10           # -10 degrees
    flash[0x10] = 1
    stages = ["0f0f00ff0000", "1f1f0000ff00", "0707880000ff"]  # 800, 1,600 and 26,000 DPI
    flash[0x1C:0x1C + 18] = bytes.fromhex("".join(stages))
    flash[0x4C:0x50] = bytes([1, 128, 3, 1])
    bindings = [(1, 1), (1, 2), (1, 4), (5, 0), (6, 4)]  # left, right, middle, a media key, a macro
    for button, (action, first) in enumerate(bindings):
        flash[0x54 + 3 * button:0x57 + 3 * button] = bytes([action, first, 1 if action == 6 else 0])
    flash[0xA0:0xA7] = bytes([3, 10, 20, 30, 4, 7, 1])
    sequence = 0x100 + 32 * 3
    flash[sequence:sequence + 11] = bytes.fromhex("02" "02cd000a00" "82cd000a00")
    macro = 0x300 + 384 * 4
    flash[macro:macro + 6] = b"\x05hello"
    flash[macro + 31:macro + 42] = bytes.fromhex("02" "0104001400" "8104000000")  # "a" down, 20 ms, up
    return flash


class Mouse:
    def __init__(self):
        self.profiles = [factory_flash() for _ in range(PROFILES)]
        self.profile = 0
        self.address = bytes([0x11, 0x22, 0x33])
        self.faults = 0

    @property
    def flash(self):
        return self.profiles[self.profile]

    def fault(self, text):
        print(text, file=sys.stderr)
        self.faults += 1

    def take(self, data):
        """The reports that answer one from the host."""
        if (len(data) != REPORT_SIZE or data[0] != REPORT_ID or data[5] > PAYLOAD_SIZE
                or crc8(data[:-1]) != data[-1]):
            self.fault("unsound: " + data.hex())
            return []
        command, sequence, address = data[1], data[2], data[3] << 8 | data[4]
        argument = data[HEAD_SIZE:HEAD_SIZE + data[5]]
        status, payload, notices = self.answer(command, address, argument)
        return [report(command, sequence, address, status, payload)] + notices

    def answer(self, command, address, argument):
        """Status, payload and the notices behind them."""
        size = len(argument)
        if command == IDENTITY and size == 0:
            return OK, bytes([CID, MID, KIND]), []
        if command in (DRIVER_STATUS, BATTERY_OPTIMIZE) and size == 1 and argument[0] <= 1:
            return OK, b"", []
        if command == ON_LINE and size == 0:
            return OK, bytes([1]) + self.address, []
        if command == BATTERY and size == 0:
            return OK, bytes([77, 1, 0, 0]), []
        if command == FLASH_WRITE and size > 0 and address + size <= FLASH_SIZE:
            return self.write(address, argument)
        if command == FLASH_READ and size == 1 and 1 <= argument[0] <= PAYLOAD_SIZE:
            if address + argument[0] <= FLASH_SIZE:
                return OK, bytes(self.flash[address:address + argument[0]]), []
        if command == CLEAR_SETTINGS and size == 0:
            self.profiles = [factory_flash() for _ in range(PROFILES)]
            self.profile = 0
            return OK, b"", [report(CLEAR_SETTINGS, 0)]
        if command == PAIRED_ADDRESS and size == 5 and argument[3] == 0 and argument[4] in (0, 1, 4):
            self.address = argument[2::-1]
            return OK, b"", []
        if command == CONFIG_SELECT and size == 1 and argument[0] < PROFILES:
            self.profile = argument[0]
            return OK, b"", [self.change(EVERYTHING_ITEM)]
        if command == CONFIG and size == 0:
            return OK, bytes([self.profile]), []
        if command == VERSION and size == 0:
            return OK, bytes([0x05, 0x01]), []
        return REFUSED, b"", []

    def write(self, address, data):
        for own, size in OWN_SPANS:
            if address < own + size and own < address + len(data):
                self.fault("written: the mouse's own bytes at %#06x" % own)
        self.flash[address:address + len(data)] = data
        return OK, b"", []

    @staticmethod
    def change(item):
        return report(STATUS_CHANGED, 0, payload=bytes(item == place for place in range(7)))

    def order(self, words):
        """The line that answers an order, and the reports that it makes the mouse send."""
        if words == ["flash"]:
            return self.flash.hex(), []
        if words[0] == "set" and len(words) == 3:
            address, data = int(words[1], 16), bytes.fromhex(words[2])
            self.flash[address:address + len(data)] = data
            items = {0x00: [RATE_ITEM], 0x04: [STAGE_ITEM]}.get(address, [])
            return "ok", [self.change(item) for item in items]
        if words[0] == "profile" and len(words) == 2:
            self.profile = int(words[1])
            return "ok", [self.change(EVERYTHING_ITEM)]
        return "unknown order", []


class Bus:
    """One interface: a listening socket whose name appears when it listens."""

    def __init__(self, folder, mouse):
        self.mouse = mouse
        self.clients = []
        self.selector = selectors.DefaultSelector()
        os.chdir(folder)  # the names are short, the folder's path may not be
        self.listener = socket.socket(socket.AF_UNIX, socket.SOCK_SEQPACKET)
        self.listener.bind("." + NAME)
        self.listener.listen()
        os.rename("." + NAME, NAME)
        self.selector.register(self.listener, selectors.EVENT_READ, self.accept)
        self.selector.register(sys.stdin.fileno(), selectors.EVENT_READ, self.read_orders)
        self.input = b""
        self.running = True

    def run(self):
        print("ready", flush=True)
        while self.running:
            for key, _ in self.selector.select():
                key.data(key.fileobj)
        os.unlink(NAME)
        for client in [self.listener] + self.clients:
            client.close()

    def accept(self, listener):
        client, _ = listener.accept()
        self.clients.append(client)
        self.selector.register(client, selectors.EVENT_READ, self.receive)

    def forget(self, client):
        if client in self.clients:
            self.clients.remove(client)
            self.selector.unregister(client)
            client.close()

    def receive(self, client):
        if client not in self.clients:
            return
        try:
            data = client.recv(4096)
        except OSError:
            data = b""
        if not data:
            self.forget(client)
            return
        self.send(self.mouse.take(data))

    def send(self, reports):
        for data in reports:
            for client in list(self.clients):
                try:
                    client.send(data, socket.MSG_DONTWAIT)
                except BlockingIOError:
                    pass  # one who does not read loses it
                except OSError:
                    self.forget(client)

    def read_orders(self, descriptor):
        data = os.read(descriptor, 4096)
        self.running = bool(data)
        self.input += data
        while b"\n" in self.input:
            line, self.input = self.input.split(b"\n", 1)
            answer, reports = self.mouse.order(line.decode().split() or [""])
            self.send(reports)
            print(answer, flush=True)


def main():
    mouse = Mouse()
    Bus(sys.argv[1], mouse).run()
    return 1 if mouse.faults else 0


if __name__ == "__main__":
    sys.exit(main())
