"""Run by gdb on the probe: compares what it prints of each object, and evaluates all that the natvis file asks for."""

import os
import re
import xml.etree.ElementTree

import gdb

CAUSE = 'failure = {code = 2, text = "No such file.", place = file.cpp:34}'
FAILURE = 'failure = {code = 5, text = "Cannot open the file.", place = probe.cpp:12, cause = "none"'

EXPECTED = {
    "sText": r'"some \"text\""',
    "sValue": '"value"',
    "sNull": "null",
    "iValue": "-42",
    "iNull": "null",
    "fValue": "0.5",
    "oTime": "2000-02-29 12:34:56 UTC",
    "oValueTime": "2000-02-29 12:34:56 UTC, to the hour",
    "oSpan": "-1 d -1 h -1 min -1 s",
    "oNamed": '"number" = 7',
    "oSuccess": "success",
    "oFailure": FAILURE + ", history[0] = " + CAUSE + "}",
    # The history of what is put in front comes after the one that was there.
    "oWrapped": 'failure = {code = 4, text = "In front.", '
    + "".join("history[%d] = %s, " % entry for entry in enumerate([
        FAILURE + "}",
        CAUSE,
        'failure = {code = 6, text = "Inside.", place = file.cpp:56}',
        'failure = {code = 3, text = "A text that is longer than what most of the failures have to say."}',
        FAILURE + "}"]))
    + "history[5] = " + CAUSE + "}",
    "oProgress": "ProgressMessage = {m_iDone = 1, m_iParts = 3}",
    "oPipe": 'pipe "work", length 4 = {'
    + ", ".join("[%d] = ProgressMessage = {m_iDone = %d, m_iParts = 70}" % (i, 66 + i) for i in range(4))
    + "}",
    "oTexts": 'pipe, length 1 = {[0] = "line"}',
}

# Of the arguments of the innermost function, which are references to bases.
EXPECTED_OF_BASES = {
    "oMessage": EXPECTED["oProgress"],
    "oPipe": EXPECTED["oPipe"],
    "oTask": 'Crossing "Crossing" > DayMachine "Day" > Phase "Red"',
}

failures = []


def expect(name, expected):
    text = gdb.execute("print " + name, to_string=True).strip()
    text = re.sub(r"^\$\d+ = (\([^)]*\) )?(@0x[0-9a-f]+: )?", "", text)
    if not text.startswith(expected) or "incomplete type" in text:
        failures.append("%s is shown as\n  %s\nin place of\n  %s" % (name, text, expected))


def evaluate(expression, value):
    """As a debugger does that reads natvis files: names are those of members."""
    expression = re.sub(r",na$", "", expression)
    names = [field.name for field in value.type.strip_typedefs().fields()]
    pattern = r"(?<![\w.>])(%s)\b" % "|".join(names)
    gdb.set_convenience_variable("value", value)
    return gdb.parse_and_eval(re.sub(pattern, r"$value.\1", expression))


def check_natvis(path, objects):
    root = xml.etree.ElementTree.parse(path).getroot()
    space = "{http://schemas.microsoft.com/vstudio/debugger/natvis/2010}"
    for kind in root.iter(space + "Type"):
        name = kind.get("Name")
        value = gdb.parse_and_eval(objects.pop(name))
        value = value.referenced_value() if value.type.code == gdb.TYPE_CODE_REF else value
        expressions = []
        for element in kind.iter():
            expressions += filter(None, [element.get("Condition")])
            if element.tag == space + "DisplayString":
                expressions += re.findall(r"{(.*?)}", element.text)
            elif element.tag in (space + "Item", space + "ExpandedItem", space + "HeadPointer"):
                expressions.append(element.text)
            elif element.tag in (space + "NextPointer", space + "ValueNode"):
                evaluate(element.text, evaluate("m->oHistory.m_oNear.m_pTop", value).dereference())
        for expression in expressions:
            evaluate(expression, value)
    if objects:
        failures.append("The natvis file lacks " + ", ".join(objects))


try:
    gdb.execute("break StopHere")
    gdb.execute("run")
    for name, expected in EXPECTED_OF_BASES.items():
        expect(name, expected)
    gdb.execute("up")
    for name, expected in EXPECTED.items():
        expect(name, expected)
    expect("oClass", "class ProgressMessage, class id ")
    expect("*pCrossing", EXPECTED_OF_BASES["oTask"])
    objects = {
        "tsl::String": "sText",
        "tsl::ValueString": "sValue",
        "tsl::ValueInt32": "iValue",
        "tsl::ValueFloat32": "fValue",
        "tsl::DateTime": "oTime",
        "tsl::ValueDateTime": "oValueTime",
        "tsl::TimeSpan": "oSpan",
        "tsl::NamedValue": "oNamed",
        "tsl::ShortText": "oFailure.m->oSourceFile",
        "tsl::Result": "oFailure",
        "tsl::ClassDescription": "oClass",
        "tsl::Message": "*(tsl::Message *)&oProgress",
        "tsl::Task": "*(tsl::Task *)pCrossing",
        "tsl::DefaultPipe<*,*,*>": "oTexts",
    }
    check_natvis(os.environ["NATVIS"], objects)
except Exception as error:
    failures.append("%s: %s" % (type(error).__name__, error))
print("\n".join(failures) or "All is shown.")
