def from_mesh(mesh, **options):
    raise NotImplementedError
