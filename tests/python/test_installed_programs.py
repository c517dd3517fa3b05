"""test_installed_programs.py - the programs pip puts in the environment's
scripts directory may be run by every user, not only by their owner."""
import os
import stat

import pytest

from conftest import SCRIPTS


@pytest.mark.parametrize("program", ["sciray", "sciray-png", "sciray-farm", "sciray-import", "sciray-molecule"])
def test_every_user_may_run_the_program(program):
    assert stat.S_IMODE(os.stat(os.path.join(SCRIPTS, program)).st_mode) == 0o755
