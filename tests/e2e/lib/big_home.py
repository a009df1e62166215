#!/usr/bin/python3
"""Turns a home file of glowdeck-simulator (--save-home) into a large home as people really have one: 149 lamps
in 21 rooms and 3 zones, names of every length (accents, repeated room names), most lamps taking colour, a few
plugs, and enough scenes for the scenes panel's filter.

Usage: big_home.py HOME.json [LAMPS (149)]   (the file is rewritten in place)
"""
import copy
import json
import sys

path = sys.argv[1]
count = int(sys.argv[2]) if len(sys.argv) > 2 else 149
home = json.load(open(path))
lights = sorted(home["lights"].items(), key=lambda item: int(item[0]))
colour = next(light for _, light in lights if "colorgamut" in light["capabilities"]["control"])
white = next((light for _, light in lights if "colorgamut" not in light["capabilities"]["control"]
              and "ct" in light["capabilities"]["control"]), colour)
room_template = next(group for group in home["groups"].values() if group["type"] == "Room")
zone_template = copy.deepcopy(room_template)
zone_template["type"] = "Zone"
scene_template = next(iter(home["scenes"].values()))

rooms = ["Living room", "Kitchen", "Küche im Keller", "Dining room", "Bedroom", "Bedroom", "Guest room",
         "Office", "Hallway", "Bathroom", "Nursery", "Garage", "Garden", "Terrace", "Attic", "Laundry",
         "Library", "Studio", "Stairs", "Entrance", "Café corner"]
kinds = ["Ceiling spot", "Gooseneck Lamp", "Floor lamp by the big window", "Desk lamp", "Lightstrip",
         "Pendant", "Wall light", "Bloom", "Go", "Candle", "Reading lamp beside the armchair"]

new_lights = {}
for number in range(1, count + 1):
    template = white if number % 5 == 0 else colour
    light = copy.deepcopy(template)
    room = rooms[(number - 1) % len(rooms)]
    light["name"] = f"{kinds[(number - 1) % len(kinds)]} {number}"
    light["uniqueid"] = f"00:17:88:01:00:{number // 256:02x}:{number % 256:02x}-0b"
    light["state"]["on"] = number % 3 != 0
    new_lights[str(number)] = light

new_groups = {}
for index, name in enumerate(rooms, start=1):
    group = copy.deepcopy(room_template)
    group["name"] = name
    group["class"] = "Other"
    group["lights"] = [str(n) for n in range(index, count + 1, len(rooms))]
    new_groups[str(index)] = group
for offset, name in enumerate(["Downstairs", "Upstairs", "Everything outside"]):
    zone = copy.deepcopy(zone_template)
    zone["name"] = name
    zone["lights"] = [str(n) for n in range(1 + offset, count + 1, 3)]
    new_groups[str(len(rooms) + 1 + offset)] = zone

new_scenes = {}
for index in range(1, len(rooms) + 1):
    for word in ["Relax", "Concentrate", "Nightlight"]:
        scene = copy.deepcopy(scene_template)
        scene.update(name=word, type="GroupScene", group=str(index), lights=new_groups[str(index)]["lights"],
                     lightstates={})
        new_scenes[f"big{index:02d}{word[:3]}"] = scene

home["lights"], home["groups"], home["scenes"] = new_lights, new_groups, new_scenes
json.dump(home, open(path, "w"))
