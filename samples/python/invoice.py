#!/usr/bin/env python3
"""Makes the invoice of samples/letter from Python, with a function as its handler FORMAT.

    invoice.py RESULT
"""

import datetime
import os
import sys
from decimal import Decimal

import velmor

FOLDER = os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "letter")

ITEMS = [
    ("Aneroid barometer, brass, 150 mm", 2, Decimal("412.50")),
    ("Theodolite T2, with tripod and case", 1, Decimal("3860.00")),
    ("Surveyor's tape 50 m, steel \\ {nylon coated}", 4, Decimal("38.75")),
    ("Spirit level 600 mm", 3, Decimal("54.20")),
    ('Field book, waterproof, "Rain" line', 12, Decimal("7.90")),
    ("Calibration certificate", 3, Decimal("95.00")),
]


def invoice():
    """The properties of the letter."""
    properties = {
        "Customer": "Observatoire de la Pointe SA",
        "Customer.Number": "004711",
        "Contact": "Madame H\u00e9l\u00e8ne Fournier",
        "Address": "Service des achats\r\n27 quai des Pilotes\r\n29200 Brest\r\nFrance",
        "Order": "B-2291",
        "Order.Date": datetime.date(2024, 2, 19),
        "Shipped": datetime.date(2024, 3, 4),
        "Delivery": "DAP",
        "Greeting": 1,
        "Invoice.Number": "2024-0187",
        "Invoice.Date": datetime.date(2024, 3, 5),
        "Invoice.Due": datetime.date(2024, 4, 4),
        "Interest": 4.5,
        "Calibration.Until": datetime.date(2026, 3, 1),
        "Clerk": "Ruth Ackroyd",
        "Clerk.Role": "Orders and accounts",
        "Bank": "Moorland Bank, Whitby\r\nIBAN GB00 MOOR 0000 0012 3456 78",
    }
    for number, (name, quantity, price) in enumerate(ITEMS, 1):
        properties |= {f"Item{number}": name, f"Item{number}.Quantity": quantity, f"Item{number}.Price": price,
                       f"Item{number}.Amount": quantity * price}
    net = sum(quantity * price for _, quantity, price in ITEMS)
    rate = Decimal("0.2")
    return properties | {"Net": net, "Vat.Rate": rate, "Vat": net * rate, "Total": net * (1 + rate)}


def date_text(date, pattern):
    words = {"dddd": f"{date:%A}", "d": str(date.day), "mmmm": f"{date:%B}", "mmm": f"{date:%b}", "yyyy": str(date.year)}
    return " ".join(words[word.rstrip(",")] + "," * word.endswith(",") for word in pattern.split())


def number_text(number, pattern):
    if pattern.endswith("%"):
        return f"{number:.0%}"
    digits = len(pattern.partition(".")[2])
    return f"{number:{',' if ',' in pattern else ''}.{digits}f}"


def formatter(properties):
    """A handler that shows dates and numbers by patterns. It reads properties where they have their types."""

    def answer(tag):
        name, pattern = tag.parameter("PROPERTY"), tag.parameter("PATTERN")
        if tag.command == "DATE":
            return date_text(properties[name], pattern)
        if tag.command == "NUMBER":
            return number_text(properties[name] if name else Decimal(tag.parameter("VALUE")), pattern)
        raise ValueError(f"there is no command {tag.command}")

    return answer


def main(target):
    with open(os.path.join(FOLDER, "invoice.rtf"), "rb") as file:
        template = velmor.decode(file.read())
    properties = invoice()
    letter = velmor.evaluate(template, properties, include_path=FOLDER, handlers={"FORMAT": formatter(properties)})
    for entry in letter.errors:
        print(f"invoice.rtf:{entry.line}:{entry.column}: {entry.message}", file=sys.stderr)
    with open(target, "wb") as file:
        file.write(velmor.encode(velmor.clean(letter.text)))
    return 3 if letter.errors else 0


if __name__ == "__main__":
    if len(sys.argv) != 2 or sys.argv[1] in ("-h", "--help"):
        print(__doc__.strip())
        sys.exit(0 if "--help" in sys.argv or "-h" in sys.argv else 2)
    sys.exit(main(sys.argv[1]))
