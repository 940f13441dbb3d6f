import sys, orvconfigure as orv
orv.open_installation(sys.argv[1])
orv.open_project(sys.argv[2])
separation = orv.height_separation(52.9600, 4.7900)
print(f"separation: {separation:.4f} m")
