"""check_sbom.py FILE BINARY..: whether an SPDX 2.3 document is well formed and names every library
that the binaries ask for, with a version and the package's address."""

import json
import re
import subprocess
import sys

document = json.load(open(sys.argv[1], encoding="utf-8"))
assert document["spdxVersion"] == "SPDX-2.3" and document["dataLicense"] == "CC0-1.0"
assert document["SPDXID"] == "SPDXRef-DOCUMENT" and document["name"]
assert re.fullmatch(r"https://[^#\s]+", document["documentNamespace"])
assert re.fullmatch(r"\d{4}-\d\d-\d\dT\d\d:\d\d:\d\dZ", document["creationInfo"]["created"])
assert re.match(r"(Tool|Person|Organization): \S", document["creationInfo"]["creators"][0])

identifiers = [package["SPDXID"] for package in document["packages"]]
assert len(set(identifiers)) == len(identifiers), "an identifier twice"
named = set()
for package in document["packages"]:
    assert re.fullmatch(r"SPDXRef-[A-Za-z0-9.-]+", package["SPDXID"]), package
    assert package["name"] and package["downloadLocation"] and package["filesAnalyzed"] is False
    for key in ("licenseConcluded", "licenseDeclared"):
        assert re.fullmatch(r"NOASSERTION|[A-Za-z0-9.-]+( WITH [A-Za-z0-9.-]+)?", package[key]), package
    if ".so" in package.get("comment", ""):
        assert package["versionInfo"] != "NOASSERTION", package
        assert package["externalRefs"][0]["referenceLocator"].startswith("pkg:deb/"), package
        named.update(package["comment"].split())
for relation in document["relationships"]:
    assert {relation["spdxElementId"], relation["relatedSpdxElement"]} <= set(identifiers), relation

for binary in sys.argv[2:]:
    listed = subprocess.run(["readelf", "-dW", binary], capture_output=True, text=True, check=True)
    needed = set(re.findall(r"\(NEEDED\).*\[(.+)\]", listed.stdout))
    assert needed, binary
    assert needed <= named, (binary, needed - named)
