"""The package velmor."""

import datetime
import decimal
import os
import pickle
import signal
import sys
import threading

import pytest

import velmor

TAG = "<KV:TAG>PROPERTY:%s=%s:</KV>"
RTF = "{\\rtf1\\ansi{\\fonttbl{\\f0 Arial;}}\\f0 %s\\par}"


def value(given, name="x"):
    """How a template shows a value."""
    return velmor.evaluate(TAG % (name, "absent"), {"X": given}).text


@pytest.mark.parametrize(
    "given, shown",
    [
        ("Zo\u00eb \u4e2d \U0001f600", "Zo\u00eb \u4e2d \U0001f600"),
        ("half \ud83d", "half \ud83d"),
        ("", ""),
        (True, "True"),
        (-7, "-7"),
        (2**31 - 1, "2147483647"),
        (2**31, "2147483648"),
        (10**18, "1E+18"),
        (2.5, "2.5"),
        (datetime.date(2024, 3, 5), "3/5/2024"),
        (datetime.datetime(2024, 3, 5, 14, 7, 9, 400000), "3/5/2024 2:07:09 PM"),
        (datetime.datetime(1899, 12, 29, 6), "12/29/1899 6:00:00 AM"),
        (datetime.date(100, 1, 1), "1/1/100"),
        (decimal.Decimal("1234567890123456789012.3450"), "1234567890123456789012.345"),
        (decimal.Decimal("-1E+3"), "-1000"),
    ],
)
def test_values_have_their_types(given, shown):
    assert value(given) == shown


@pytest.mark.parametrize(
    "given, error",
    [
        (float("nan"), ValueError),
        (10**400, OverflowError),
        (decimal.Decimal("Infinity"), ValueError),
        (decimal.Decimal("1.00000000000000000000000000009"), ValueError),
        (datetime.date(99, 12, 31), ValueError),
        (b"bytes", TypeError),
        (object(), TypeError),
        ({1: "x"}, TypeError),
    ],
)
def test_values_that_no_property_can_hold(given, error):
    with pytest.raises(error):
        value(given)


def test_mappings_and_lists_are_child_properties():
    seen = {}

    def look(tag):
        seen["text"] = tag.property("Address")
        return ""

    properties = {"Address": {"City": "Rome", "Lines": ["a", ("b", None)]}}
    velmor.evaluate("<KV:LOOK>X:</KV>", properties, handlers={"look": look})
    assert seen["text"] == ""
    assert properties == {"Address": {"City": "Rome", "Lines": ["a", ("b", None)]}}
    circle = []
    circle.append(circle)
    with pytest.raises(ValueError, match="100 levels"):
        value(circle)


@pytest.mark.parametrize(
    "call",
    [
        lambda: velmor.evaluate(b"bytes"),
        lambda: velmor.evaluate("text", ["no mapping"]),
        lambda: velmor.evaluate("text", missing=1),
        lambda: velmor.evaluate("text", include_path=1),
        lambda: velmor.evaluate("text", handlers={1: str}),
        lambda: velmor.Template(b"bytes"),
        lambda: velmor.clean(b"bytes"),
        lambda: velmor.join([RTF, b"bytes"]),
        lambda: velmor.join(RTF),
        lambda: velmor.tags(None),
        lambda: velmor.check(b"bytes"),
        lambda: velmor.schema(b"bytes"),
        lambda: velmor.decode("text"),
        lambda: velmor.encode(b"bytes"),
    ],
)
def test_other_types_are_refused(call):
    with pytest.raises(TypeError):
        call()


def test_options_hold(tmp_path):
    (tmp_path / "in.txt").write_text("included \u00e4", "utf-8")
    include = "<KV:TAG>INCLUDE=in.txt:</KV>"
    assert velmor.evaluate(include, include_path=tmp_path).text == "included \u00e4"
    confined = velmor.evaluate(include, include_path=str(tmp_path), include_root=os.path.join(tmp_path, "none"))
    assert (confined.text, len(confined.errors)) == ("", 1)
    assert velmor.evaluate(TAG % ("No", ""), missing="mark").text == "[No?]"
    assert velmor.evaluate(TAG % ("x", ""), {"x": TAG % ("y", "z")}, data_tags="refuse").text == TAG % ("y", "z")
    with pytest.raises(ValueError, match="'empty', 'keep', 'mark', 'fail', not 'gone'"):
        velmor.evaluate("", missing="gone")
    with pytest.raises(velmor.Error, match="none.reg") as error:
        velmor.evaluate("", registry=tmp_path / "none.reg")
    assert error.value.number == 53


def test_missing_values_can_raise():
    with pytest.raises(velmor.EvaluationError) as error:
        velmor.evaluate("a\n" + TAG % ("No", ""), missing="fail")
    entry = error.value.errors[0]
    assert (entry.line, entry.column, entry.position) == (2, 1, 3)
    assert error.value.message == entry.message
    again = pickle.loads(pickle.dumps(error.value))
    assert (again.errors, again.number) == (error.value.errors, error.value.number)


def test_entries_have_places_of_the_template():
    table = "{\\rtf1 \\trowd\\cellx100\\pard\\intbl x\\cell\\row\\pard "
    entry = velmor.evaluate(table + "<KV:NONE>GO:</KV>}").errors[0]
    assert entry.position == len(table) + 1
    traced = velmor.evaluate(table + TAG % ("a", "b") + "}", trace=True).trace
    assert traced[0].position == len(table) + 1


def test_handlers_ask_their_tag():
    def answer(tag):
        tag.set_property("Seen", "<" + tag.command_value + ">")
        tag.log_error("heard")
        assert tag.property("none") is None
        return "|".join([tag.command, tag.parameter("P"), tag.parameter("none", "d"), tag.property("X"),
                         tag.evaluate(TAG % ("X", "")), str(tag.is_for_rtf)])

    template = "<KV:ASK>GO=v:P=" + TAG % ("x", "") + ":</KV>" + TAG % ("Seen", "")
    result = velmor.evaluate(template, {"x": "\U0001f600"}, handlers={"ask": answer})
    assert result.text == "GO|\U0001f600|d|\U0001f600|\U0001f600|False<v>"
    assert [entry.message for entry in result.errors] == ["heard"]
    assert velmor.evaluate("{\\rtf1 <KV:G-A>X:</KV>}", handlers={"G-A": lambda tag: "{" + str(tag.is_for_rtf)}).text == (
        "{\\rtf1 \\{True}")


def test_exceptions_of_handlers_are_entries():
    def fail(tag):
        raise ValueError("no paper")

    result = velmor.evaluate("a<KV:F>X:</KV>b<KV:I>X:</KV>c", handlers={"F": fail, "I": lambda tag: 1})
    assert result.text == "abc"
    assert [(each.number, each.message, each.handler) for each in result.errors] == [
        (440, "ValueError: no paper", "F"), (440, "TypeError: the handler returned int, not str", "I")]


def test_interrupts_are_not_swallowed():
    calls = []

    def interrupt(tag):
        calls.append(tag)
        os.kill(os.getpid(), signal.SIGINT)
        return tag.evaluate("x")

    def outer(tag):
        tag.evaluate("<KV:INNER>X:</KV>")
        calls.append("not reached")

    handlers = {"inner": interrupt, "outer": outer}
    with pytest.raises(KeyboardInterrupt):
        velmor.evaluate("<KV:OUTER>X:</KV><KV:OUTER>X:</KV>", handlers=handlers)
    assert len(calls) == 1
    with pytest.raises(RuntimeError, match="has been answered"):
        calls[0].command


def test_a_tag_belongs_to_its_thread():
    def answer(tag):
        caught = []

        def ask():
            try:
                tag.parameter("P")
            except RuntimeError as error:
                caught.append(str(error))

        thread = threading.Thread(target=ask)
        thread.start()
        thread.join()
        return caught[0]

    assert velmor.evaluate("<KV:A>X:</KV>", handlers={"A": answer}).text == "a TagCall belongs to another thread"


def test_threads_evaluate_one_template():
    template = pickle.loads(pickle.dumps(velmor.Template((TAG % ("n", "") + "<KV:ADD>X:</KV>,") * 20)))
    wrong = []

    def work(number):
        for _ in range(50):
            text = template.evaluate({"n": number}, handlers={"ADD": lambda tag: f"+{number}"}).text
            if text != f"{number}+{number}," * 20:
                wrong.append(text)

    threads = [threading.Thread(target=work, args=(number,)) for number in range(4)]
    for thread in threads:
        thread.start()
    for thread in threads:
        thread.join()
    assert wrong == []


def test_the_lock_is_released_in_the_engine():
    """Python itself takes the lock from no thread here, so another one goes on only while the engine works."""
    template = velmor.Template(TAG % ("x", "") * 10_000)
    seen, start = [], threading.Lock()
    start.acquire()
    thread = threading.Thread(target=lambda: (start.acquire(), seen.append(True)))
    interval = sys.getswitchinterval()
    sys.setswitchinterval(1e6)
    try:
        thread.start()
        start.release()
        for _ in range(100):
            if not seen:
                template.evaluate({"x": "y"})
        has_gone_on = bool(seen)
    finally:
        sys.setswitchinterval(interval)
    thread.join()
    assert has_gone_on


def test_templates_are_traced():
    result = velmor.evaluate("\U0001f600 " + TAG % ("x", ""), {"x": "<KV:A>B:</KV>!"}, handlers={"A": lambda tag: "yes"},
                             trace=True)
    assert result.text == "\U0001f600 yes!"
    outer, inner = result.trace
    assert (outer.origin, outer.handler, outer.command, outer.position, outer.place, outer.length, outer.parent) == (
        "template", "TAG", "PROPERTY", 4, 4, 4, 0)
    assert (inner.origin, inner.handler, inner.place, inner.length, inner.parent) == ("property", "A", 4, 3, 1)
    assert velmor.evaluate("").trace is None


def test_tags_are_listed():
    text = "\U0001f600<KV:format>DATE:A=" + TAG % ("d", "") + ":B:</KV>"
    (tag,) = velmor.tags(text)
    assert (tag.position, tag.handler, tag.command, tag.tags[0].command) == (3, "FORMAT", "DATE", "PROPERTY")
    assert tag.parameters[1][0] == "B"
    assert text[velmor.index_of(text, tag.position):].startswith("<KV:format>")
    assert velmor.index_of("ascii", 2) == 1
    with pytest.raises(ValueError):
        velmor.index_of("x", 0)


def test_mistakes_are_found(tmp_path):
    (tmp_path / "in.txt").write_text("\n<KV:NONE>X:</KV>")
    template = "<KV:OWN>X:</KV>" + TAG % ("Nmae", "") + "<KV:TAG>INCLUDE=in.txt:</KV>"
    found = velmor.check(template, include_path=tmp_path, handlers={"OWN": str})
    assert [(each.code, each.is_error, each.place.line, each.included_from[0].position) for each in found] == [
        ("KV201", True, 2, len(template) - len("<KV:TAG>INCLUDE=in.txt:</KV>") + 1)]
    assert found[0].place.file.endswith("in.txt")
    found = velmor.check(template, properties={"Name": "x"}, include_path=tmp_path)
    assert [each.code for each in found] == ["KV201", "KV302", "KV201"]
    assert found[1].hint == "did you mean Name?"
    many = velmor.check("<KV:NONE>X:</KV>" * 1002)
    assert (len(many), many.more) == (1000, 2)
    with pytest.raises(velmor.Error) as error:
        velmor.check("", properties={"kvTag.Missing": "gone"})
    assert error.value.number == 5


def test_schemas_describe_the_data(tmp_path):
    (tmp_path / "in.txt").write_text(TAG % ("Town", ""))
    schema = velmor.schema(TAG % ("Count", "3&") + "<KV:TAG>INCLUDE=in.txt:</KV><KV:TAG>PROPERTY:Need:</KV>",
                           include_path=tmp_path)
    assert list(schema["properties"]) == ["Count", "Town", "Need"]
    assert schema["properties"]["Count"] == {"type": "number", "default": 3}
    assert schema["required"] == ["Need"]


def test_documents_are_cleaned_and_joined():
    clean = velmor.clean(RTF % ("{" + RTF % "in" + "}"))
    assert clean.count("{\\rtf") == 1
    assert velmor.clean("plain \U0001f600") == "plain \U0001f600"
    joined = velmor.join(RTF % name for name in ("first", "second"))
    assert joined.count("{\\rtf") == 1 and joined.index("first") < joined.index("second")
    with pytest.raises(velmor.Error, match="document 2 contains no RTF document") as error:
        velmor.join([RTF % "", "plain"])
    assert error.value.number == 5
    with pytest.raises(velmor.Error):
        velmor.join([])


@pytest.mark.parametrize(
    "data, text, written",
    [
        (b"{\\rtf1 \x80}", "{\\rtf1 \u20ac}", b"{\\rtf1 \x80}"),
        (b"\xef\xbb\xbfx\xc3\xa4", "x\u00e4", b"x\xc3\xa4"),
        (b"x\xe4", "x\u00e4", b"x\xc3\xa4"),
        ("{\\rtf1 \u00e4}".encode("cp1252"), "{\\rtf1 \u00e4}", b"{\\rtf1 \xe4}"),
    ],
)
def test_documents_have_bytes(data, text, written):
    assert velmor.decode(data) == text
    assert velmor.encode(text) == written


def test_rtf_keeps_characters_beyond_the_code_page():
    assert velmor.encode("{\\rtf1 \U0001f600}") == b"{\\rtf1 \\u-10179?\\u-8704?}"


def test_big_texts():
    data = "\u4e2d" * 10_000_000
    assert velmor.evaluate(TAG % ("x", "") + "!", {"x": data}).text == data + "!"
