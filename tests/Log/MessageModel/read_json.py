"""Reads one JSON object from each line of standard input and prints it as key=value pairs parted by blanks, the
values as their UTF-8 bytes in hexadecimal digits."""

import json
import sys

for line in sys.stdin.buffer:
    pairs = json.loads(line.decode("utf-8", "strict")).items()
    print(*(f"{key}={value.encode('utf-8').hex()}" for key, value in sorted(pairs)))
