"""Shows the values of Tessel in gdb. gdb loads this file with the library, by its name."""

import datetime
import itertools

import gdb
import gdb.printing


def get_limit():
    """The number of characters or items that gdb shows at most."""
    return gdb.parameter("print elements") or 1 << 20


def read_pointer(value, type_name):
    """A smart or atomic pointer as a plain pointer, which has the same bytes."""
    return value.address.cast(gdb.lookup_type(type_name).pointer().pointer()).dereference()


def read_bytes(address, length):
    """A text of that length, shortened as gdb does."""
    limit = get_limit()
    text = address.string(errors="replace", length=min(int(length), limit))
    return text + "..." if length > limit else text


def get_string(value):
    """A tsl::String as a Python text."""
    text = value["m_sText"]
    return read_bytes(text["_M_dataplus"]["_M_p"], int(text["_M_string_length"]))


def get_value_string(value):
    """A tsl::ValueString as a Python text, or None."""
    return None if value["m_bNull"] else get_string(value["m_sText"])


def quote(text):
    return "null" if text is None else '"' + text.replace("\\", "\\\\").replace('"', '\\"') + '"'


def get_object(value):
    """The complete object of a value, which may be only a base of it."""
    try:
        whole = value.dynamic_type
        if whole != value.type.unqualified():
            return value.address.cast(whole.pointer()).dereference()
    except (gdb.error, MemoryError):
        pass
    return value


def is_derived(kind, name):
    kind = kind.strip_typedefs()
    if kind.code != gdb.TYPE_CODE_STRUCT:
        return False
    if kind.tag == name:
        return True
    return any(is_derived(field.type, name) for field in kind.fields() if field.is_base_class)


def get_members(value, stop):
    """The members of an object and of its bases, except those named."""
    for field in value.type.strip_typedefs().fields():
        if field.is_base_class:
            if field.type.strip_typedefs().tag not in stop:
                yield from get_members(value[field], stop)
        elif hasattr(field, "bitpos") and not field.artificial:
            yield field.name, value[field]


class Printer:
    def __init__(self, value):
        self.value = value


class StringPrinter(Printer):
    def to_string(self):
        text = self.value["m_sText"]
        return text["_M_dataplus"]["_M_p"].lazy_string(length=int(text["_M_string_length"]))

    def display_hint(self):
        return "string"


class ValueStringPrinter(Printer):
    def to_string(self):
        return quote(get_value_string(self.value))


class NumberPrinter(Printer):
    """ValueInt32 and ValueFloat32."""

    def to_string(self):
        if self.value["m_bNull"]:
            return "null"
        return next(member for name, member in get_members(self.value, ()) if name in ("m_iValue", "m_fValue"))


def get_moment(value):
    time = int(value["m_iTime"])
    try:
        moment = datetime.datetime(1970, 1, 1) + datetime.timedelta(seconds=time)
        text = moment.strftime("%Y-%m-%d %H:%M:%S UTC")
    except OverflowError:
        text = "%d s since 1970" % time
    return text + get_precision(value)


def get_precision(value):
    precision = int(value["m_ePrecision"])
    names = ["day", "hour", "minute"]
    return ", to the " + names[precision] if precision in range(len(names)) else ""


class DateTimePrinter(Printer):
    def to_string(self):
        return get_moment(self.value)


class ValueDateTimePrinter(Printer):
    def to_string(self):
        return "null" if self.value["m_bNull"] else get_moment(self.value["m_oDateTime"])


class TimeSpanPrinter(Printer):
    def to_string(self):
        parts = [("m_iDays", "d"), ("m_iHours", "h"), ("m_iMinutes", "min"), ("m_iSeconds", "s")]
        text = " ".join("%d %s" % (self.value[name], unit) for name, unit in parts if self.value[name])
        return (text or "0 s") + get_precision(self.value)


class NamedValuePrinter(Printer):
    def to_string(self):
        held = read_pointer(self.value["m_pValue"], "tsl::Value")
        text = get_object(held.dereference()).format_string() if held else "no value"
        return "%s = %s" % (quote(get_value_string(self.value["m_sName"])), text)


def get_failure_text(text):
    """A ShortText as a Python text."""
    address = read_pointer(text["m_sLong"], "char") or text["m_aShort"][0].address
    return read_bytes(address, int(text["m_iLength"]))


def get_entries(stack):
    link = stack["m_pTop"]
    while link:
        yield link["oEntry"]
        link = link["pNext"]


def get_history(record):
    """The latest failure first. The second stack has the oldest one on top."""
    history = record["oHistory"]
    yield from get_entries(history["m_oNear"])
    yield from reversed(list(get_entries(history["m_oFar"])))


class ResultPrinter(Printer):
    def to_string(self):
        return "failure" if self.value["m"] else "success"

    def children(self):
        if not self.value["m"]:
            return
        record = self.value["m"].dereference()
        yield "code", record["iErrorCode"]
        text = record["oText"]
        yield "text", quote(None if text["m_bNull"] else get_failure_text(text["m_oBytes"]))
        file = get_failure_text(record["oSourceFile"])
        if file:
            yield "place", "%s:%d" % (file, record["iSourceLine"])
        if record["eCategory"] != 0:
            yield "category", record["eCategory"]
        cause = read_pointer(record["pCause"], "tsl::ValueString")
        if cause:
            yield "cause", cause.dereference()
        for index, entry in enumerate(itertools.islice(get_history(record), get_limit())):
            yield "history[%d]" % index, entry


class ClassDescriptionPrinter(Printer):
    def to_string(self):
        base = self.value["m_pBase"]
        return "%s, class id %d%s%s, %s" % (
            self.value["m_sClassName"].string(errors="replace"),
            self.value["m_iClassId"],
            ", abstract" if self.value["m_bAbstract"] else "",
            ", derived from " + base["m_sClassName"].string(errors="replace") if base else "",
            self.value["m_sFile"].string(errors="replace"),
        )


class MessagePrinter(Printer):
    """The class and the members of a message, also if the reference is to a base class."""

    def to_string(self):
        return get_object(self.value).type.name

    def children(self):
        return get_members(get_object(self.value), ("tsl::Message",))


class TaskPrinter(Printer):
    """The class and the name of a task; of a machine, also those of its current tasks down to the innermost."""

    def to_string(self):
        path = []
        task = self.value
        while True:
            whole = get_object(task)
            record = whole["m"]["m_pRecord"].dereference()
            path.append("%s %s" % (whole.type.name, quote(get_string(record["sName"]))))
            current = read_pointer(record["pCurrentTask"], "tsl::Task")
            if not current:
                return " > ".join(path)
            task = current.dereference()

    def children(self):
        return get_members(get_object(self.value), ("tsl::Task",))


class PipePrinter(Printer):
    """The length and the contents of a pipe."""

    def __init__(self, value):
        super().__init__(get_object(value))
        fields = dict(get_members(self.value, ()))
        self.name = fields.get("m_sName")
        queue = fields["m_oQueue"]
        # An item is a pointer, and a block of a deque has 512 bytes.
        state = queue["_M_impl"]
        self.begin, self.end = state["_M_start"], state["_M_finish"]
        self.block = 512 // self.begin["_M_cur"].dereference().type.sizeof
        self.item = queue.type.strip_typedefs().template_argument(0).strip_typedefs().template_argument(0)

    def get_length(self):
        blocks = int(self.end["_M_node"] - self.begin["_M_node"])
        first = int(self.begin["_M_cur"] - self.begin["_M_first"])
        return blocks * self.block + int(self.end["_M_cur"] - self.end["_M_first"]) - first

    def to_string(self):
        name = " " + quote(get_string(self.name)) if self.name is not None else ""
        return "pipe%s, length %d" % (name, self.get_length())

    def children(self):
        first = int(self.begin["_M_cur"] - self.begin["_M_first"])
        for index in range(min(self.get_length(), get_limit())):
            block, place = divmod(first + index, self.block)
            entry = self.begin["_M_node"][block][place]
            yield "[%d]" % index, read_pointer(entry, self.item.name).dereference()


PRINTERS = {
    "tsl::String": StringPrinter,
    "tsl::ValueString": ValueStringPrinter,
    "tsl::ValueInt32": NumberPrinter,
    "tsl::ValueFloat32": NumberPrinter,
    "tsl::ValueDateTime": ValueDateTimePrinter,
    "tsl::DateTime": DateTimePrinter,
    "tsl::TimeSpan": TimeSpanPrinter,
    "tsl::NamedValue": NamedValuePrinter,
    "tsl::Result": ResultPrinter,
    "tsl::ClassDescription": ClassDescriptionPrinter,
}

# These are bases of a program's own classes.
BASE_PRINTERS = {"tsl::Message": MessagePrinter, "tsl::Task": TaskPrinter}


class Printers(gdb.printing.PrettyPrinter):
    def __init__(self):
        super().__init__("tessel")

    def __call__(self, value):
        kind = value.type.strip_typedefs()
        if kind.code != gdb.TYPE_CODE_STRUCT or not kind.tag:
            return None
        if kind.tag in PRINTERS:
            return PRINTERS[kind.tag](value)
        for base, printer in BASE_PRINTERS.items():
            if is_derived(kind, base):
                return printer(value)
        if kind.tag.startswith(("tsl::DefaultPipe<", "tsl::Pipe<", "tsl::PipeDeb")):
            return PipePrinter(value)
        return None


gdb.printing.register_pretty_printer(gdb.current_objfile(), Printers(), replace=True)
