#!/usr/bin/env python3
"""The component from Python, through its interface in C: four shirts in a store's database.

    counter.py LIBRARY DATABASE      counter.py build/libOndrelCorpComponents.so.1 shop.db

The database is one that `ondrel db create` and `ondrel db sample` have made. Nothing but ctypes is used; the shapes
are those of ondrel_component.h.
"""
import ctypes as c
import sys

METHOD, GET, PUT = 1, 2, 4
EMPTY, NULL, I4, R8, DATE, BSTR, DISPATCH, BOOL = 0, 1, 3, 5, 7, 8, 9, 11
NAME_OF_PUT = -3

libc = c.CDLL(None)
libc.malloc.restype = c.c_void_p
libc.malloc.argtypes = [c.c_size_t]
libc.free.argtypes = [c.c_void_p]


class Guid(c.Structure):
    _fields_ = [("d1", c.c_uint32), ("d2", c.c_uint16), ("d3", c.c_uint16), ("d4", c.c_uint8 * 8)]

    def __init__(self, text):
        parts = text.split("-")
        super().__init__(int(parts[0], 16), int(parts[1], 16), int(parts[2], 16), (c.c_uint8 * 8)(*bytes.fromhex(parts[3] + parts[4])))


class Content(c.Union):
    _fields_ = [("number", c.c_int32), ("flag", c.c_int16), ("amount", c.c_double), ("pointer", c.c_void_p)]


class Value(c.Structure):
    _fields_ = [("type", c.c_uint16), ("reserved", c.c_uint16 * 3), ("content", Content)]


class Arguments(c.Structure):
    _fields_ = [("values", c.POINTER(Value)), ("names", c.POINTER(c.c_int32)), ("count", c.c_uint32), ("named", c.c_uint32)]


class Failure(c.Structure):
    _fields_ = [("code", c.c_uint16), ("reserved", c.c_uint16), ("source", c.c_void_p), ("description", c.c_void_p),
                ("help", c.c_void_p), ("context", c.c_uint32), ("pointer", c.c_void_p), ("fill", c.c_void_p), ("status", c.c_int32)]


DISPATCH_ID, FACTORY_ID, NO_ID = Guid("00020400-0000-0000-C000-000000000046"), Guid("00000001-0000-0000-C000-000000000046"), Guid("0" * 8 + "-0000-0000-0000-" + "0" * 12)


def entry(pointer, place, *types):
    """The function at a place of an object's table."""
    table = c.cast(pointer, c.POINTER(c.POINTER(c.c_void_p))).contents
    return c.CFUNCTYPE(c.c_int32, c.c_void_p, *types)(table[place])


def new_text(text):
    """A text with its length in front, in memory that the component may give back."""
    data = text.encode("utf-16-le")
    block = libc.malloc(4 + len(data) + 2)
    c.memmove(block, len(data).to_bytes(4, "little") + data + b"\0\0", 4 + len(data) + 2)
    return block + 4


def take_text(pointer):
    if not pointer:
        return ""
    text = c.string_at(pointer, int.from_bytes(c.string_at(pointer - 4, 4), "little")).decode("utf-16-le")
    libc.free(pointer - 4)
    return text


def to_value(given):
    value = Value()
    if isinstance(given, bool):
        value.type, value.content.flag = BOOL, -given
    elif isinstance(given, int):
        value.type, value.content.number = I4, given
    elif isinstance(given, float):
        value.type, value.content.amount = R8, given
    elif isinstance(given, str):
        value.type, value.content.pointer = BSTR, new_text(given)
    return value


def from_value(value):
    content = value.content
    return {I4: lambda: content.number, R8: lambda: content.amount, DATE: lambda: content.amount, BOOL: lambda: content.flag != 0,
            BSTR: lambda: take_text(content.pointer), DISPATCH: lambda: Object(content.pointer)}.get(value.type, lambda: None)()


class Object:
    """An object of the component: o.call("addItem", 201, 1, 4), o.get("ticketNo"), o.put("storeNumber", 1)."""

    def __init__(self, pointer):
        self.pointer = pointer

    def __del__(self):
        if self.pointer:
            entry(self.pointer, 2)(self.pointer)

    def invoke(self, flags, name, given):
        member, text = c.c_int32(), c.c_char_p((name + "\0").encode("utf-16-le") + b"\0")
        status = entry(self.pointer, 5, c.c_void_p, c.c_void_p, c.c_uint32, c.c_uint32, c.c_void_p)(
            self.pointer, c.byref(NO_ID), c.byref(text), 1, 0, c.byref(member))
        if status < 0:
            raise RuntimeError(f"no member {name}")
        values = (Value * max(1, len(given)))(*[to_value(one) for one in reversed(given)])
        put = c.c_int32(NAME_OF_PUT)
        arguments = Arguments(values, c.pointer(put) if flags == PUT else None, len(given), 1 if flags == PUT else 0)
        result, failure = Value(), Failure()
        status = entry(self.pointer, 6, c.c_int32, c.c_void_p, c.c_uint32, c.c_uint16, c.c_void_p, c.c_void_p, c.c_void_p, c.c_void_p)(
            self.pointer, member, c.byref(NO_ID), 0, flags, c.byref(arguments), c.byref(result), c.byref(failure), None)
        for value in values:
            if value.type == BSTR:
                libc.free(value.content.pointer - 4)
        if status < 0:
            source, description = take_text(failure.source), take_text(failure.description)
            raise RuntimeError(f"error {failure.status & 0xFFFF} from {source}: {description}")
        return from_value(result)

    def call(self, name, *given):
        return self.invoke(METHOD, name, given)

    def get(self, name):
        return self.invoke(GET, name, ())

    def put(self, name, value):
        self.invoke(PUT, name, (value,))


def create(library, class_id):
    factory, made = c.c_void_p(), c.c_void_p()
    if library.DllGetClassObject(c.byref(Guid(class_id)), c.byref(FACTORY_ID), c.byref(factory)) < 0:
        raise RuntimeError("no such class")
    entry(factory.value, 3, c.c_void_p, c.c_void_p, c.c_void_p)(factory.value, None, c.byref(DISPATCH_ID), c.byref(made))
    entry(factory.value, 2)(factory.value)
    return Object(made.value)


def main():
    library = c.CDLL(sys.argv[1])
    invoice = create(library, "1FDC7BD4-F46D-47B7-BD99-FE04480227D2")
    invoice.put("DBConnectionString", "Driver=Embedded;Database=" + sys.argv[2])
    invoice.call("initInvoice")
    for name, value in {"storeNumber": 1, "priceListId": 1, "custSeqNumber": 1}.items():
        invoice.put(name, value)
    invoice.call("setStoreDays", 1)
    invoice.call("addItem", 201, 1, 4)
    print(f"{invoice.call('getTotalItemCount')} shirts, ${invoice.call('getTotalPriceForDisplay'):.2f}")
    try:
        invoice.call("addItem", 201, 1, "x", "y")
    except RuntimeError as error:
        print(error)


main()
