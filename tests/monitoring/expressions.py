# SPDX-License-Identifier: BSD-3-Clause
"""The expressions of the files in monitoring/."""

import json
import re


def of_dashboard(path):
    """Those of all panels, with values in place of Grafana's variables."""
    dashboard = json.loads(path.read_text(encoding="utf-8"))
    texts = [target["expr"] for panel in dashboard["panels"] for target in panel["targets"]]
    return [text.replace("$__rate_interval", "1m").replace("$host", ".*") for text in texts]


def rules_file(expressions):
    """A file of rules of Prometheus with these expressions. JSON is YAML."""
    rules = [{"record": f"panel:{number}", "expr": text} for number, text in enumerate(expressions)]
    return json.dumps({"groups": [{"name": "dashboard", "rules": rules}]})


def metrics_in(text):
    """Names of Spanlet's metrics in a text, without those that a rule records."""
    return set(re.findall(r"(?<![:\w])spanlet_\w+", text))


def recorded_in(text):
    """Names in a text of what rules record."""
    return set(re.findall(r"\binterface:\w+:\w+", text))
