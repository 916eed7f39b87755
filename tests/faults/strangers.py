SCENES = ()
