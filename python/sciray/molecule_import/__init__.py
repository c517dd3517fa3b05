"""molecule_import - turns a structure file, a trajectory, an MDAnalysis
Universe or an ASE Atoms into sciray scenes of balls and sticks: reading
(MDAnalysis and ASE), elements and their colours and radii, bonds, colours,
the styles, the unit cell, camera and lights. sciray-molecule is its
command line, sciray.from_molecule and sciray.molecule_frames its library
calls; it builds on sciray.Scene."""
