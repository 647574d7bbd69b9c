"""Sees when a program's window is on the screen and painted, by looking at the screen itself."""

import ctypes
import ctypes.util

ALL_PLANES = 0xffffffff
Z_PIXMAP = 2
SAMPLE_PIXELS = 160


class XWindowAttributes(ctypes.Structure):
    _fields_ = [("x", ctypes.c_int), ("y", ctypes.c_int), ("width", ctypes.c_int),
                ("height", ctypes.c_int), ("border_width", ctypes.c_int), ("depth", ctypes.c_int),
                ("visual", ctypes.c_void_p), ("root", ctypes.c_ulong), ("class_", ctypes.c_int),
                ("bit_gravity", ctypes.c_int), ("win_gravity", ctypes.c_int),
                ("backing_store", ctypes.c_int), ("backing_planes", ctypes.c_ulong),
                ("backing_pixel", ctypes.c_ulong), ("save_under", ctypes.c_int),
                ("colormap", ctypes.c_ulong), ("map_installed", ctypes.c_int),
                ("map_state", ctypes.c_int), ("rest", ctypes.c_long * 8)]


class XImage(ctypes.Structure):
    _fields_ = [("width", ctypes.c_int), ("height", ctypes.c_int), ("xoffset", ctypes.c_int),
                ("format", ctypes.c_int), ("data", ctypes.c_void_p), ("byte_order", ctypes.c_int),
                ("bitmap_unit", ctypes.c_int), ("bitmap_bit_order", ctypes.c_int),
                ("bitmap_pad", ctypes.c_int), ("depth", ctypes.c_int),
                ("bytes_per_line", ctypes.c_int), ("rest", ctypes.c_long * 16)]


class Screen:
    def __init__(self):
        self.x = ctypes.CDLL("libX11.so.6")
        self.x.XOpenDisplay.restype = ctypes.c_void_p
        self.x.XDefaultRootWindow.restype = ctypes.c_ulong
        self.x.XGetImage.restype = ctypes.POINTER(XImage)
        self.display = ctypes.c_void_p(self.x.XOpenDisplay(None))
        self.root = ctypes.c_ulong(self.x.XDefaultRootWindow(self.display))
        # A window may vanish between two questions about it.
        self.ignore = ctypes.CFUNCTYPE(ctypes.c_int, ctypes.c_void_p, ctypes.c_void_p)(
            lambda *_: 0)
        self.x.XSetErrorHandler(self.ignore)

    def mapped_windows(self):
        """The mapped windows on the root that are larger than the sample, as numbers."""
        root, parent = ctypes.c_ulong(), ctypes.c_ulong()
        children, count = ctypes.POINTER(ctypes.c_ulong)(), ctypes.c_uint()
        self.x.XQueryTree(self.display, self.root, ctypes.byref(root), ctypes.byref(parent),
                          ctypes.byref(children), ctypes.byref(count))
        found = []
        for i in range(count.value):
            box = XWindowAttributes()
            window = ctypes.c_ulong(children[i])
            if self.x.XGetWindowAttributes(self.display, window, ctypes.byref(box)) \
                    and box.map_state == 2 and min(box.width, box.height) > SAMPLE_PIXELS:
                found.append((window.value, box.x, box.y))
        if children:
            self.x.XFree(children)
        return found

    def colours(self, left, top):
        """How many colours a sample of the screen has; an unpainted window has one or two."""
        image = self.x.XGetImage(self.display, self.root, left, top, SAMPLE_PIXELS, SAMPLE_PIXELS,
                                 ctypes.c_ulong(ALL_PLANES), Z_PIXMAP)
        if not image:
            return 0
        size = image.contents.bytes_per_line * image.contents.height
        pixels = memoryview(ctypes.string_at(image.contents.data, size)).cast("I")
        count = len(set(pixels))
        self.x.XDestroyImage(image)
        return count
