"""list.py IMAGE LIST: the list of applications with Python's standard library."""

import lzma
import sys
from xml.etree import ElementTree

with open(sys.argv[1], "rb") as file:
    image = file.read(65536)
length = int.from_bytes(image[:4], "big")
database = ElementTree.fromstring(lzma.decompress(image[5 : 4 + length], lzma.FORMAT_ALONE))
lines = [database.findtext("ver", "")]
for app in database.iterfind("appList/app"):
    lines.append(app.findtext("id", "0") + ":" + app.findtext("name", ""))
with open(sys.argv[2], "w", encoding="utf-8") as file:
    file.write("\n".join(lines) + "\n")
