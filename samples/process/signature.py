#!/usr/bin/env python3
"""A handler as a program: it answers <KV:SIGN>NAME:FOR=customer:</KV> with a closing line.

Velmor starts it once and sends it one JSON object a line; docs/handlers.md describes them.
"""

import json
import sys


def ask(question):
    print(json.dumps(question), flush=True)
    return json.loads(sys.stdin.readline())["value"]


def answer(tag):
    if tag["command"] != "NAME":
        return {"error": f"there is no command {tag['command']}"}
    customer = ask({"property": tag["parameters"].get("FOR", "customer")})
    signer = "the sales team" if tag["value"] == "0" else tag["value"]  # of "NAME" alone
    return {"result": f"Yours to {customer}, {signer}" if customer else "Yours faithfully"}


for line in sys.stdin:
    message = json.loads(line)
    if "end" in message:
        break
    if "describe" in message:
        reply = {"commands": {"NAME": {"syntax": "NAME[=signer]:[FOR=property:]", "parameters": {"FOR": []},
                                       "description": "A closing line that names the customer"}}}
    else:
        reply = answer(message["tag"])
    print(json.dumps(reply), flush=True)
