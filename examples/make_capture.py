#!/usr/bin/env python3
"""Writes the sample capture of the example frame_monitor to standard output.

    examples/make_capture.py > examples/frame_monitor.capture

frame_monitor.cpp says what a frame is. The checksum here is Python's own.
"""
import binascii
import sys

HOST = 0x00
DEVICE = 0x10


def frame(destination, payload):
    head = bytes([destination, len(payload) + 4]) + payload
    return head + binascii.crc_hqx(head, 0xFFFF).to_bytes(2, "big")


def damaged(sound, place):
    """One bit of the byte at place arrives wrong."""
    return sound[:place] + bytes([sound[place] ^ 0x04]) + sound[place + 1 :]


sys.stdout.buffer.write(
    frame(DEVICE, b"ID?")
    + frame(HOST, b"ID Kestry 7")
    + frame(DEVICE, b"GET \x01")
    + damaged(frame(HOST, b"\x01\x2a"), 3)  # in the payload
    + frame(DEVICE, b"GET \x01")
    + frame(HOST, b"\x01\x2a")
    + damaged(frame(DEVICE, b"RESET"), 1)  # in the count: where does the frame end?
    + frame(HOST, b"\x1b[31mnot red")  # a device may send escape sequences
    + frame(DEVICE, b"")
    + frame(HOST, bytes(range(24)))
    + frame(DEVICE, b"LOG?")[:-3]  # the capture stops in the middle of a frame
)
