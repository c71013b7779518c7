"""Runs tools/svgmeta on 0.svg, 1.svg ... of the working folder within one process: N.emf and N.said come of N.svg.

A hundred starts of the interpreter would take longer than all the rest of the test.
"""

import contextlib
import importlib.machinery
import importlib.util
import pathlib
import sys

sys.dont_write_bytecode = True
loader = importlib.machinery.SourceFileLoader("svgmeta", sys.argv[1])
svgmeta = importlib.util.module_from_spec(importlib.util.spec_from_loader("svgmeta", loader))
loader.exec_module(svgmeta)
for number in range(int(sys.argv[2])):
    with open(f"{number}.said", "w", encoding="utf-8") as said, contextlib.redirect_stderr(said):
        status = svgmeta.main([f"{number}.svg", f"{number}.emf"])
    if (status == 0) != pathlib.Path(f"{number}.emf").exists():
        sys.exit(f"{number}.svg: status {status}")
