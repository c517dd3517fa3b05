# sciray.farm - sciray-farm: renders scene files split into bands on this
# machine, on ssh hosts through GNU parallel, or on a Slurm cluster, and
# joins the bands into pictures. It needs only the Python standard library,
# so that it also runs as a single file (the Debian package's sciray-farm)
# on nodes without numpy.
