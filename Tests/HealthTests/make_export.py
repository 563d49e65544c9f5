"""Writes a health export for measurements: python3 make_export.py RECORDS > export.xml

One-minute samples of steps, heart rate and energy of a watch and a phone, and a night of sleep a day,
sorted by type as a phone writes them. 2,500,000 records are about 1 GB. The same number always gives
the same bytes.
"""

import random
import sys
from datetime import datetime, timedelta

HEAD = """<?xml version="1.0" encoding="UTF-8"?>
<!DOCTYPE HealthData [
<!ELEMENT HealthData (ExportDate,Me,(Record|Correlation|Workout|ActivitySummary)*)>
<!ATTLIST HealthData
  locale CDATA #REQUIRED
]>
<HealthData locale="en_DE">
 <ExportDate value="2026-01-01 08:00:00 +0100"/>
"""
WATCH = (
    "&lt;&lt;HKDevice: 0x{:x}&gt;, name:Watch, manufacturer:Maker, model:Watch, "
    "hardware:W1, software:10.3&gt;"
)
PHONE = (
    "&lt;&lt;HKDevice: 0x{:x}&gt;, name:Phone, manufacturer:Maker, model:iPhone, "
    "hardware:P1, software:17.3&gt;"
)
KINDS = [
    ("HKQuantityTypeIdentifierHeartRate", "count/min", WATCH, "Anna’s Watch", 0, (50, 160)),
    ("HKQuantityTypeIdentifierStepCount", "count", WATCH, "Anna’s Watch", 1, (1, 140)),
    ("HKQuantityTypeIdentifierStepCount", "count", PHONE, "Anna’s Phone", 1, (1, 130)),
    ("HKQuantityTypeIdentifierActiveEnergyBurned", "kcal", WATCH, "Anna’s Watch", 1, (0, 9)),
]
STAGES = ["AsleepCore", "AsleepDeep", "AsleepREM", "Awake"]


def stamp(minute):
    return (datetime(2016, 1, 1) + timedelta(minutes=minute)).strftime("%Y-%m-%d %H:%M:%S +0100")


def record(out, kind, unit, device, source, start, end, value):
    unit = f' unit="{unit}"' if unit else ""
    out.write(
        f' <Record type="{kind}" sourceName="{source}" sourceVersion="10.3" device="{device}"{unit}'
        f' creationDate="{stamp(end + 1)}" startDate="{stamp(start)}" endDate="{stamp(end)}"'
        f' value="{value}"/>\n'
    )


def main(records, out):
    dice = random.Random(records)
    out.write(HEAD)
    nights = records // 100
    for kind, unit, device, source, length, (low, high) in KINDS:
        minute = 0
        for _ in range((records - nights) // len(KINDS)):
            minute += dice.randint(1, 3)
            value = dice.randint(low, high)
            here = device.format(dice.getrandbits(33))
            record(out, kind, unit, here, source, minute, minute + length, value)
    for night in range(nights):
        start = (night // 12) * 1440 + 1350 + (night % 12) * 40
        value = "HKCategoryValueSleepAnalysis" + STAGES[night % len(STAGES)]
        kind = "HKCategoryTypeIdentifierSleepAnalysis"
        record(out, kind, "", WATCH.format(night), "Anna’s Watch", start, start + 40, value)
    out.write("</HealthData>\n")


if __name__ == "__main__":
    sys.stdout.reconfigure(encoding="utf-8")
    main(int(sys.argv[1]), sys.stdout)
