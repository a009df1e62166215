#include "SimulatedDefaultHome.h"

namespace {

// Kept as home documents so that the built-in homes go through the same reading (and order keeping) as a
// home file does. Lights are listed ..., 9, 10, 12, 11 on purpose: clients must not assume numeric order.
QByteArray groundFloor()
{
    static const char text[] = R"json(
{
    "lights": {
        "1": {
            "state": {
                "on": true,
                "bri": 200,
                "hue": 8418,
                "sat": 140,
                "effect": "none",
                "xy": [0.4573, 0.41],
                "ct": 366,
                "alert": "none",
                "colormode": "xy",
                "mode": "homeautomation",
                "reachable": true
            },
            "swupdate": {"state": "noupdates", "lastinstall": "2023-10-12T09:14:02"},
            "type": "Extended color light",
            "name": "Sofa lamp",
            "modelid": "LCT015",
            "manufacturername": "Signify Netherlands B.V.",
            "productname": "Hue color lamp",
            "capabilities": {
                "certified": true,
                "control": {
                    "mindimlevel": 1000,
                    "maxlumen": 806,
                    "colorgamuttype": "C",
                    "colorgamut": [[0.6915, 0.3083], [0.17, 0.7], [0.1532, 0.0475]],
                    "ct": {"min": 153, "max": 500}
                },
                "streaming": {"renderer": true, "proxy": true}
            },
            "config": {
                "archetype": "sultanbulb",
                "function": "mixed",
                "direction": "omnidirectional",
                "startup": {"mode": "safety", "configured": true}
            },
            "uniqueid": "00:17:88:01:03:4a:2b:11-0b",
            "swversion": "1.101.2",
            "swconfigid": "F1C1AE43",
            "productid": "Philips-LCT015-1-A19ECLv5"
        },
        "2": {
            "state": {
                "on": true,
                "bri": 180,
                "hue": 41000,
                "sat": 200,
                "effect": "none",
                "xy": [0.1979, 0.2368],
                "ct": 153,
                "alert": "none",
                "colormode": "hs",
                "mode": "homeautomation",
                "reachable": true
            },
            "swupdate": {"state": "noupdates", "lastinstall": "2023-10-12T09:14:02"},
            "type": "Extended color light",
            "name": "Living ceiling",
            "modelid": "LCT015",
            "manufacturername": "Signify Netherlands B.V.",
            "productname": "Hue color lamp",
            "capabilities": {
                "certified": true,
                "control": {
                    "mindimlevel": 1000,
                    "maxlumen": 806,
                    "colorgamuttype": "C",
                    "colorgamut": [[0.6915, 0.3083], [0.17, 0.7], [0.1532, 0.0475]],
                    "ct": {"min": 153, "max": 500}
                },
                "streaming": {"renderer": true, "proxy": true}
            },
            "config": {
                "archetype": "ceilinground",
                "function": "mixed",
                "direction": "omnidirectional",
                "startup": {"mode": "safety", "configured": true}
            },
            "uniqueid": "00:17:88:01:03:4a:2b:12-0b",
            "swversion": "1.101.2",
            "swconfigid": "F1C1AE43",
            "productid": "Philips-LCT015-1-A19ECLv5"
        },
        "3": {
            "state": {
                "on": false,
                "bri": 120,
                "hue": 7000,
                "sat": 180,
                "effect": "none",
                "xy": [0.5016, 0.4151],
                "ct": 447,
                "alert": "none",
                "colormode": "xy",
                "mode": "homeautomation",
                "reachable": true
            },
            "swupdate": {"state": "noupdates", "lastinstall": "2023-10-12T09:14:02"},
            "type": "Extended color light",
            "name": "Hue go",
            "modelid": "LLC020",
            "manufacturername": "Signify Netherlands B.V.",
            "productname": "Hue go",
            "capabilities": {
                "certified": true,
                "control": {
                    "mindimlevel": 40,
                    "maxlumen": 300,
                    "colorgamuttype": "C",
                    "colorgamut": [[0.6915, 0.3083], [0.17, 0.7], [0.1532, 0.0475]],
                    "ct": {"min": 153, "max": 500}
                },
                "streaming": {"renderer": true, "proxy": true}
            },
            "config": {
                "archetype": "huego",
                "function": "mixed",
                "direction": "omnidirectional",
                "startup": {"mode": "safety", "configured": true}
            },
            "uniqueid": "00:17:88:01:02:7c:8d:31-0b",
            "swversion": "67.101.2",
            "swconfigid": "F1C1AE43",
            "productid": "Philips-LLC020-1-HGv1"
        },
        "4": {
            "state": {
                "on": true,
                "bri": 254,
                "ct": 233,
                "alert": "none",
                "colormode": "ct",
                "mode": "homeautomation",
                "reachable": true
            },
            "swupdate": {"state": "noupdates", "lastinstall": "2023-10-12T09:14:02"},
            "type": "Color temperature light",
            "name": "Kitchen candle 1",
            "modelid": "LTW012",
            "manufacturername": "Signify Netherlands B.V.",
            "productname": "Hue ambiance candle",
            "capabilities": {
                "certified": true,
                "control": {"mindimlevel": 1000, "maxlumen": 470, "ct": {"min": 153, "max": 454}},
                "streaming": {"renderer": false, "proxy": false}
            },
            "config": {
                "archetype": "candlebulb",
                "function": "functional",
                "direction": "omnidirectional",
                "startup": {"mode": "safety", "configured": true}
            },
            "uniqueid": "00:17:88:01:04:11:22:33-0b",
            "swversion": "1.93.11",
            "swconfigid": "116B9B1F",
            "productid": "Philips-LTW012-1-E14CTv1"
        },
        "5": {
            "state": {
                "on": false,
                "bri": 254,
                "ct": 233,
                "alert": "none",
                "colormode": "ct",
                "mode": "homeautomation",
                "reachable": false
            },
            "swupdate": {"state": "noupdates", "lastinstall": "2023-10-12T09:14:02"},
            "type": "Color temperature light",
            "name": "Kitchen candle 2",
            "modelid": "LTW012",
            "manufacturername": "Signify Netherlands B.V.",
            "productname": "Hue ambiance candle",
            "capabilities": {
                "certified": true,
                "control": {"mindimlevel": 1000, "maxlumen": 470, "ct": {"min": 153, "max": 454}},
                "streaming": {"renderer": false, "proxy": false}
            },
            "config": {
                "archetype": "candlebulb",
                "function": "functional",
                "direction": "omnidirectional",
                "startup": {"mode": "safety", "configured": true}
            },
            "uniqueid": "00:17:88:01:04:11:22:34-0b",
            "swversion": "1.93.11",
            "swconfigid": "116B9B1F",
            "productid": "Philips-LTW012-1-E14CTv1"
        },
        "6": {
            "state": {"on": true, "bri": 77, "alert": "none", "mode": "homeautomation", "reachable": true},
            "swupdate": {"state": "noupdates", "lastinstall": "2023-10-12T09:14:02"},
            "type": "Dimmable light",
            "name": "Bedside left",
            "modelid": "LWB010",
            "manufacturername": "Signify Netherlands B.V.",
            "productname": "Hue white lamp",
            "capabilities": {
                "certified": true,
                "control": {"mindimlevel": 5000, "maxlumen": 806},
                "streaming": {"renderer": false, "proxy": false}
            },
            "config": {
                "archetype": "classicbulb",
                "function": "functional",
                "direction": "omnidirectional",
                "startup": {"mode": "safety", "configured": true}
            },
            "uniqueid": "00:17:88:01:08:aa:bb:01-0b",
            "swversion": "1.90.1",
            "swconfigid": "5ECA8D59",
            "productid": "Philips-LWB010-1-A19DLv4"
        },
        "7": {
            "state": {
                "on": false,
                "bri": 254,
                "alert": "none",
                "mode": "homeautomation",
                "reachable": true
            },
            "swupdate": {"state": "noupdates", "lastinstall": "2023-10-12T09:14:02"},
            "type": "Dimmable light",
            "name": "Bedside right",
            "modelid": "LWB010",
            "manufacturername": "Signify Netherlands B.V.",
            "productname": "Hue white lamp",
            "capabilities": {
                "certified": true,
                "control": {"mindimlevel": 5000, "maxlumen": 806},
                "streaming": {"renderer": false, "proxy": false}
            },
            "config": {
                "archetype": "classicbulb",
                "function": "functional",
                "direction": "omnidirectional",
                "startup": {"mode": "safety", "configured": true}
            },
            "uniqueid": "00:17:88:01:08:aa:bb:02-0b",
            "swversion": "1.90.1",
            "swconfigid": "5ECA8D59",
            "productid": "Philips-LWB010-1-A19DLv4"
        },
        "8": {
            "state": {
                "on": true,
                "bri": 127,
                "ct": 370,
                "alert": "none",
                "colormode": "ct",
                "mode": "homeautomation",
                "reachable": true
            },
            "swupdate": {"state": "notupdatable", "lastinstall": "2022-03-02T19:40:11"},
            "type": "Color temperature light",
            "name": "Wardrobe",
            "modelid": "TRADFRI bulb E27 WS opal 980lm",
            "manufacturername": "IKEA of Sweden",
            "productname": "Color temperature light",
            "capabilities": {
                "certified": false,
                "control": {"ct": {"min": 0, "max": 65535}},
                "streaming": {"renderer": false, "proxy": false}
            },
            "config": {
                "archetype": "classicbulb",
                "function": "functional",
                "direction": "omnidirectional"
            },
            "uniqueid": "90:fd:9f:ff:fe:6e:1c:04-01",
            "swversion": "2.0.022"
        },
        "9": {
            "state": {
                "on": true,
                "bri": 160,
                "hue": 47000,
                "sat": 230,
                "effect": "none",
                "xy": [0.1691, 0.0441],
                "ct": 153,
                "alert": "none",
                "colormode": "xy",
                "mode": "homeautomation",
                "reachable": true
            },
            "swupdate": {"state": "noupdates", "lastinstall": "2023-10-12T09:14:02"},
            "type": "Extended color light",
            "name": "Desk strip",
            "modelid": "LCX002",
            "manufacturername": "Signify Netherlands B.V.",
            "productname": "Hue play gradient lightstrip",
            "capabilities": {
                "certified": true,
                "control": {
                    "mindimlevel": 100,
                    "maxlumen": 1600,
                    "colorgamuttype": "C",
                    "colorgamut": [[0.6915, 0.3083], [0.17, 0.7], [0.1532, 0.0475]],
                    "ct": {"min": 153, "max": 500}
                },
                "streaming": {"renderer": true, "proxy": true}
            },
            "config": {
                "archetype": "huelightstrip",
                "function": "mixed",
                "direction": "omnidirectional",
                "startup": {"mode": "safety", "configured": true}
            },
            "uniqueid": "00:17:88:01:0b:c4:1e:5a-0b",
            "swversion": "1.104.2",
            "swconfigid": "F1C1AE43",
            "productid": "Philips-LCX002-1-LedStripPXv1"
        },
        "10": {
            "state": {"on": false, "alert": "select", "mode": "homeautomation", "reachable": true},
            "swupdate": {"state": "noupdates", "lastinstall": "2023-10-12T09:14:02"},
            "type": "On/Off plug-in unit",
            "name": "Fan plug",
            "modelid": "LOM001",
            "manufacturername": "Signify Netherlands B.V.",
            "productname": "Hue Smart plug",
            "capabilities": {
                "certified": true,
                "control": {},
                "streaming": {"renderer": false, "proxy": false}
            },
            "config": {
                "archetype": "plug",
                "function": "functional",
                "direction": "omnidirectional",
                "startup": {"mode": "safety", "configured": true}
            },
            "uniqueid": "00:17:88:01:0c:3d:9f:77-0b",
            "swversion": "1.65.9_hB3217DF",
            "swconfigid": "A641B5AB",
            "productid": "SmartPlug_OnOff_v01-00_01"
        },
        "12": {
            "state": {"on": false, "bri": 254, "alert": "none", "reachable": false},
            "swupdate": {"state": "notupdatable", "lastinstall": null},
            "type": "Dimmable light",
            "name": "Hall lamp",
            "modelid": "LWB004",
            "manufacturername": "Philips",
            "uniqueid": "00:17:88:01:00:d4:12:08-0b",
            "swversion": "66012040"
        },
        "11": {
            "state": {
                "on": true,
                "bri": 100,
                "hue": 56100,
                "sat": 240,
                "effect": "none",
                "xy": [0.4149, 0.1776],
                "alert": "none",
                "colormode": "hs",
                "mode": "homeautomation",
                "reachable": true
            },
            "swupdate": {"state": "noupdates", "lastinstall": "2023-10-12T09:14:02"},
            "type": "Color light",
            "name": "Bloom",
            "modelid": "LLC011",
            "manufacturername": "Signify Netherlands B.V.",
            "productname": "Hue bloom",
            "capabilities": {
                "certified": true,
                "control": {
                    "mindimlevel": 10000,
                    "maxlumen": 120,
                    "colorgamuttype": "A",
                    "colorgamut": [[0.704, 0.296], [0.2151, 0.7106], [0.138, 0.08]]
                },
                "streaming": {"renderer": true, "proxy": false}
            },
            "config": {"archetype": "huebloom", "function": "decorative", "direction": "upwards"},
            "uniqueid": "00:17:88:01:00:b3:f1:90-0b",
            "swversion": "67.91.1"
        }
    },
    "groups": {
        "1": {
            "name": "Living room",
            "lights": ["1", "2", "3"],
            "sensors": [],
            "type": "Room",
            "state": {"all_on": false, "any_on": false},
            "recycle": false,
            "class": "Living room",
            "action": {
                "on": true,
                "bri": 200,
                "hue": 8418,
                "sat": 140,
                "effect": "none",
                "xy": [0.4573, 0.41],
                "ct": 366,
                "alert": "none",
                "colormode": "xy"
            }
        },
        "2": {
            "name": "Kitchen",
            "lights": ["4", "5"],
            "sensors": [],
            "type": "Room",
            "state": {"all_on": false, "any_on": false},
            "recycle": false,
            "class": "Kitchen",
            "action": {
                "on": true,
                "bri": 254,
                "hue": 8418,
                "sat": 140,
                "effect": "none",
                "xy": [0.4573, 0.41],
                "ct": 233,
                "alert": "none",
                "colormode": "ct"
            }
        },
        "3": {
            "name": "Bedroom",
            "lights": ["6", "7", "8"],
            "sensors": [],
            "type": "Room",
            "state": {"all_on": false, "any_on": false},
            "recycle": false,
            "class": "Bedroom",
            "action": {
                "on": true,
                "bri": 77,
                "hue": 8418,
                "sat": 140,
                "effect": "none",
                "xy": [0.4573, 0.41],
                "ct": 370,
                "alert": "none",
                "colormode": "ct"
            }
        },
        "4": {
            "name": "Office",
            "lights": ["9", "10", "11"],
            "sensors": [],
            "type": "Room",
            "state": {"all_on": false, "any_on": false},
            "recycle": false,
            "class": "Office",
            "action": {
                "on": true,
                "bri": 160,
                "hue": 8418,
                "sat": 140,
                "effect": "none",
                "xy": [0.1691, 0.0441],
                "ct": 366,
                "alert": "none",
                "colormode": "xy"
            }
        },
        "5": {
            "name": "Downstairs",
            "lights": ["1", "2", "4", "12"],
            "sensors": [],
            "type": "Zone",
            "state": {"all_on": false, "any_on": false},
            "recycle": false,
            "class": "Downstairs",
            "action": {
                "on": true,
                "bri": 200,
                "hue": 8418,
                "sat": 140,
                "effect": "none",
                "xy": [0.4573, 0.41],
                "ct": 366,
                "alert": "none",
                "colormode": "xy"
            }
        },
        "6": {
            "name": "Reading lights",
            "lights": ["1", "6", "7"],
            "sensors": [],
            "type": "LightGroup",
            "state": {"all_on": false, "any_on": false},
            "recycle": false,
            "action": {
                "on": true,
                "bri": 200,
                "hue": 8418,
                "sat": 140,
                "effect": "none",
                "xy": [0.4573, 0.41],
                "ct": 366,
                "alert": "none",
                "colormode": "xy"
            }
        }
    },
    "scenes": {
        "xR4tB1kVn2QmZ8a": {
            "name": "Relax",
            "type": "GroupScene",
            "group": "1",
            "lights": ["1", "2", "3"],
            "owner": "8bQ3yN0e9sKx4LdVw7RcAaTf2UjGm5HpZi6oEnC1",
            "recycle": false,
            "locked": false,
            "appdata": {"version": 1, "data": "hL8r2_r01_d09"},
            "picture": "",
            "image": "a1f7da49-d181-4328-abea-68c9dc4b5416",
            "lastupdated": "2023-11-04T18:22:09",
            "version": 2,
            "lightstates": {
                "1": {"on": true, "bri": 144, "ct": 447},
                "2": {"on": true, "bri": 144, "ct": 447},
                "3": {"on": true, "bri": 144, "xy": [0.5019, 0.4152]}
            }
        },
        "pL9wE3dFg7HjK2s": {
            "name": "Bright",
            "type": "GroupScene",
            "group": "1",
            "lights": ["1", "2", "3"],
            "owner": "8bQ3yN0e9sKx4LdVw7RcAaTf2UjGm5HpZi6oEnC1",
            "recycle": false,
            "locked": false,
            "appdata": {"version": 1, "data": "Xh2kL_r01_d01"},
            "picture": "",
            "image": "732ff1d9-76a7-4630-aad0-c8acc499bb0b",
            "lastupdated": "2023-11-04T18:22:09",
            "version": 2,
            "lightstates": {
                "1": {"on": true, "bri": 254, "ct": 366},
                "2": {"on": true, "bri": 254, "ct": 366},
                "3": {"on": true, "bri": 254, "ct": 366}
            }
        },
        "c0ncEntrAte4Kit": {
            "name": "Concentrate",
            "type": "GroupScene",
            "group": "2",
            "lights": ["4", "5"],
            "owner": "8bQ3yN0e9sKx4LdVw7RcAaTf2UjGm5HpZi6oEnC1",
            "recycle": false,
            "locked": false,
            "appdata": {"version": 1, "data": "c0nc3_r02_d03"},
            "picture": "",
            "image": "b90c8900-a6b7-422c-a5d3-e170187dbf8c",
            "lastupdated": "2023-09-30T07:02:44",
            "version": 2,
            "lightstates": {
                "4": {"on": true, "bri": 254, "ct": 233},
                "5": {"on": true, "bri": 254, "ct": 233}
            }
        },
        "N1ghtL1ghtBdRm0": {
            "name": "Nightlight",
            "type": "GroupScene",
            "group": "3",
            "lights": ["6", "7", "8"],
            "owner": "8bQ3yN0e9sKx4LdVw7RcAaTf2UjGm5HpZi6oEnC1",
            "recycle": false,
            "locked": true,
            "appdata": {"version": 1, "data": "n1ght_r03_d07"},
            "picture": "",
            "image": "28bbfeff-1a0f-4ea3-a4b5-5bbc5f0d0a0e",
            "lastupdated": "2023-11-04T18:22:09",
            "version": 2,
            "lightstates": {
                "6": {"on": true, "bri": 1},
                "7": {"on": false, "bri": 1},
                "8": {"on": true, "bri": 1, "ct": 454}
            }
        },
        "Sav4nnaSunset01": {
            "name": "Savanna sunset",
            "type": "LightScene",
            "lights": ["9", "11"],
            "owner": "8bQ3yN0e9sKx4LdVw7RcAaTf2UjGm5HpZi6oEnC1",
            "recycle": false,
            "locked": false,
            "appdata": {"version": 1, "data": "sv4nn_r04_d11"},
            "picture": "",
            "lastupdated": "2023-12-01T20:15:00",
            "version": 2,
            "lightstates": {
                "9": {"on": true, "bri": 200, "xy": [0.5737, 0.3822]},
                "11": {"on": true, "bri": 180, "xy": [0.6019, 0.3207]}
            }
        },
        "0f7e1d5c3-on-0": {
            "name": "Movie night",
            "type": "LightScene",
            "lights": ["1", "2", "3"],
            "owner": "8bQ3yN0e9sKx4LdVw7RcAaTf2UjGm5HpZi6oEnC1",
            "recycle": true,
            "locked": false,
            "appdata": {},
            "picture": "",
            "lastupdated": "2021-02-14T21:03:17",
            "version": 1,
            "lightstates": {
                "1": {"on": true, "bri": 50, "xy": [0.2, 0.1]},
                "2": {"on": false, "bri": 1},
                "3": {"on": true, "bri": 30, "xy": [0.5, 0.4]}
            }
        }
    },
    "sensors": {
        "2": {
            "state": {"buttonevent": 1002, "lastupdated": "2024-01-20T19:02:11"},
            "config": {"on": true, "battery": 82, "reachable": true, "pending": []},
            "name": "Hall dimmer",
            "type": "ZLLSwitch",
            "modelid": "RWL021",
            "manufacturername": "Signify Netherlands B.V.",
            "productname": "Hue dimmer switch",
            "swversion": "6.1.1.28573",
            "uniqueid": "00:17:88:01:04:12:3f:5a-02-fc00"
        },
        "5": {
            "state": {"buttonevent": 4002, "lastupdated": "2024-01-19T07:40:55"},
            "config": {"on": true, "battery": 9, "reachable": true, "pending": []},
            "name": "Bedroom dimmer",
            "type": "ZLLSwitch",
            "modelid": "RWL022",
            "manufacturername": "Signify Netherlands B.V.",
            "productname": "Hue dimmer switch",
            "swversion": "2.44.0_hF4400CA",
            "uniqueid": "00:17:88:01:0b:7e:21:c4-02-fc00"
        }
    },
    "config": {
        "name": "Philips hue",
        "zigbeechannel": 25,
        "bridgeid": "001788FFFE6A3B2C",
        "mac": "00:17:88:6a:3b:2c",
        "dhcp": true,
        "ipaddress": "127.0.0.1",
        "netmask": "255.0.0.0",
        "gateway": "127.0.0.1",
        "proxyaddress": "none",
        "proxyport": 0,
        "timezone": "Europe/Amsterdam",
        "modelid": "BSB002",
        "datastoreversion": "131",
        "swversion": "1955082050",
        "apiversion": "1.48.0",
        "swupdate2": {
            "checkforupdate": false,
            "lastchange": "2023-10-12T09:14:02",
            "bridge": {"state": "noupdates", "lastinstall": "2023-10-10T03:12:44"},
            "state": "noupdates",
            "autoinstall": {"updatetime": "T14:00:00", "on": true}
        },
        "portalservices": true,
        "portalconnection": "disconnected",
        "portalstate": {
            "signedon": false,
            "incoming": false,
            "outgoing": false,
            "communication": "disconnected"
        },
        "internetservices": {
            "internet": "disconnected",
            "remoteaccess": "disconnected",
            "time": "disconnected",
            "swupdate": "disconnected"
        },
        "factorynew": false,
        "replacesbridgeid": null,
        "backup": {"status": "idle", "errorcode": 0},
        "starterkitid": ""
    },
    "users": []
}
)json";
    return QByteArray(text);
}

QByteArray upperFloor()
{
    // The floor above, with a bridge of its own: ids and names that the ground floor uses too (lamp "1",
    // room "1" "Living room", a scene "Relax" in it), for other lamps, states and scene ids.
    static const char text[] = R"json(
{
    "lights": {
        "1": {
            "state": {
                "on": false,
                "bri": 90,
                "hue": 44000,
                "sat": 160,
                "effect": "none",
                "xy": [0.2485, 0.2121],
                "ct": 250,
                "alert": "none",
                "colormode": "xy",
                "mode": "homeautomation",
                "reachable": true
            },
            "swupdate": {"state": "noupdates", "lastinstall": "2024-02-03T10:21:40"},
            "type": "Extended color light",
            "name": "Floor lamp",
            "modelid": "LCA001",
            "manufacturername": "Signify Netherlands B.V.",
            "productname": "Hue color lamp",
            "capabilities": {
                "certified": true,
                "control": {
                    "mindimlevel": 200,
                    "maxlumen": 800,
                    "colorgamuttype": "C",
                    "colorgamut": [[0.6915, 0.3083], [0.17, 0.7], [0.1532, 0.0475]],
                    "ct": {"min": 153, "max": 500}
                },
                "streaming": {"renderer": true, "proxy": true}
            },
            "config": {
                "archetype": "floorshade",
                "function": "mixed",
                "direction": "omnidirectional",
                "startup": {"mode": "safety", "configured": true}
            },
            "uniqueid": "00:17:88:01:09:5e:71:01-0b",
            "swversion": "1.104.2",
            "swconfigid": "F1C1AE43",
            "productid": "Philips-LCA001-5-A19ECLv6"
        },
        "2": {
            "state": {
                "on": true,
                "bri": 254,
                "ct": 300,
                "alert": "none",
                "colormode": "ct",
                "mode": "homeautomation",
                "reachable": true
            },
            "swupdate": {"state": "noupdates", "lastinstall": "2024-02-03T10:21:40"},
            "type": "Color temperature light",
            "name": "Upstairs ceiling",
            "modelid": "LTA001",
            "manufacturername": "Signify Netherlands B.V.",
            "productname": "Hue ambiance lamp",
            "capabilities": {
                "certified": true,
                "control": {"mindimlevel": 200, "maxlumen": 800, "ct": {"min": 153, "max": 454}},
                "streaming": {"renderer": false, "proxy": false}
            },
            "config": {
                "archetype": "ceilinground",
                "function": "functional",
                "direction": "omnidirectional",
                "startup": {"mode": "safety", "configured": true}
            },
            "uniqueid": "00:17:88:01:09:5e:71:02-0b",
            "swversion": "1.104.2",
            "swconfigid": "116B9B1F",
            "productid": "Philips-LTA001-1-A19CTv7"
        },
        "3": {
            "state": {"on": false, "bri": 200, "alert": "none", "mode": "homeautomation", "reachable": true},
            "swupdate": {"state": "noupdates", "lastinstall": "2024-02-03T10:21:40"},
            "type": "Dimmable light",
            "name": "Mirror light",
            "modelid": "LWA001",
            "manufacturername": "Signify Netherlands B.V.",
            "productname": "Hue white lamp",
            "capabilities": {
                "certified": true,
                "control": {"mindimlevel": 5000, "maxlumen": 800},
                "streaming": {"renderer": false, "proxy": false}
            },
            "config": {
                "archetype": "classicbulb",
                "function": "functional",
                "direction": "omnidirectional",
                "startup": {"mode": "safety", "configured": true}
            },
            "uniqueid": "00:17:88:01:09:5e:71:03-0b",
            "swversion": "1.104.2",
            "swconfigid": "5ECA8D59",
            "productid": "Philips-LWA001-1-A19DLv5"
        },
        "4": {
            "state": {
                "on": true,
                "bri": 40,
                "hue": 6000,
                "sat": 220,
                "effect": "none",
                "xy": [0.5612, 0.4042],
                "alert": "none",
                "colormode": "xy",
                "mode": "homeautomation",
                "reachable": true
            },
            "swupdate": {"state": "noupdates", "lastinstall": "2024-02-03T10:21:40"},
            "type": "Color light",
            "name": "Night light",
            "modelid": "LLC010",
            "manufacturername": "Signify Netherlands B.V.",
            "productname": "Hue iris",
            "capabilities": {
                "certified": true,
                "control": {
                    "mindimlevel": 10000,
                    "maxlumen": 210,
                    "colorgamuttype": "A",
                    "colorgamut": [[0.704, 0.296], [0.2151, 0.7106], [0.138, 0.08]]
                },
                "streaming": {"renderer": true, "proxy": false}
            },
            "config": {"archetype": "hueiris", "function": "decorative", "direction": "upwards"},
            "uniqueid": "00:17:88:01:09:5e:71:04-0b",
            "swversion": "67.91.1"
        },
        "5": {
            "state": {"on": false, "alert": "none", "mode": "homeautomation", "reachable": true},
            "swupdate": {"state": "noupdates", "lastinstall": "2024-02-03T10:21:40"},
            "type": "On/Off plug-in unit",
            "name": "Train set",
            "modelid": "LOM001",
            "manufacturername": "Signify Netherlands B.V.",
            "productname": "Hue Smart plug",
            "capabilities": {
                "certified": true,
                "control": {},
                "streaming": {"renderer": false, "proxy": false}
            },
            "config": {
                "archetype": "plug",
                "function": "functional",
                "direction": "omnidirectional",
                "startup": {"mode": "safety", "configured": true}
            },
            "uniqueid": "00:17:88:01:09:5e:71:05-0b",
            "swversion": "1.65.9_hB3217DF",
            "swconfigid": "A641B5AB",
            "productid": "SmartPlug_OnOff_v01-00_01"
        }
    },
    "groups": {
        "1": {
            "name": "Living room",
            "lights": ["1", "2"],
            "sensors": [],
            "type": "Room",
            "state": {"all_on": false, "any_on": false},
            "recycle": false,
            "class": "Living room",
            "action": {"on": true, "bri": 254, "ct": 300, "alert": "none", "colormode": "ct"}
        },
        "2": {
            "name": "Bathroom",
            "lights": ["3"],
            "sensors": [],
            "type": "Room",
            "state": {"all_on": false, "any_on": false},
            "recycle": false,
            "class": "Bathroom",
            "action": {"on": false, "bri": 200, "alert": "none"}
        },
        "3": {
            "name": "Kids room",
            "lights": ["4", "5"],
            "sensors": [],
            "type": "Room",
            "state": {"all_on": false, "any_on": false},
            "recycle": false,
            "class": "Kids bedroom",
            "action": {
                "on": true,
                "bri": 40,
                "hue": 6000,
                "sat": 220,
                "effect": "none",
                "xy": [0.5612, 0.4042],
                "alert": "none",
                "colormode": "xy"
            }
        },
        "4": {
            "name": "Upstairs",
            "lights": ["1", "3", "4"],
            "sensors": [],
            "type": "Zone",
            "state": {"all_on": false, "any_on": false},
            "recycle": false,
            "class": "Upstairs",
            "action": {"on": true, "bri": 90, "xy": [0.2485, 0.2121], "alert": "none", "colormode": "xy"}
        }
    },
    "scenes": {
        "Up4rL1vRelax01a": {
            "name": "Relax",
            "type": "GroupScene",
            "group": "1",
            "lights": ["1", "2"],
            "owner": "Qm7vT2xR9kLw4NcZp8YdBs3HfJ6gE1uA0oKiVe5X",
            "recycle": false,
            "locked": false,
            "appdata": {"version": 1, "data": "uR3lx_r01_d09"},
            "picture": "",
            "image": "a1f7da49-d181-4328-abea-68c9dc4b5416",
            "lastupdated": "2024-02-03T10:30:12",
            "version": 2,
            "lightstates": {
                "1": {"on": true, "bri": 144, "xy": [0.5019, 0.4152]},
                "2": {"on": true, "bri": 144, "ct": 447}
            }
        },
        "Up5tK1dsN1ght0b": {
            "name": "Nightlight",
            "type": "GroupScene",
            "group": "3",
            "lights": ["4", "5"],
            "owner": "Qm7vT2xR9kLw4NcZp8YdBs3HfJ6gE1uA0oKiVe5X",
            "recycle": false,
            "locked": false,
            "appdata": {"version": 1, "data": "uN1gt_r03_d07"},
            "picture": "",
            "image": "28bbfeff-1a0f-4ea3-a4b5-5bbc5f0d0a0e",
            "lastupdated": "2024-02-03T10:30:12",
            "version": 2,
            "lightstates": {
                "4": {"on": true, "bri": 1, "xy": [0.5612, 0.4042]},
                "5": {"on": false}
            }
        }
    },
    "config": {
        "name": "Upstairs",
        "zigbeechannel": 15,
        "bridgeid": "001788FFFE9C4D5E",
        "mac": "00:17:88:9c:4d:5e",
        "dhcp": true,
        "ipaddress": "127.0.0.1",
        "netmask": "255.0.0.0",
        "gateway": "127.0.0.1",
        "proxyaddress": "none",
        "proxyport": 0,
        "timezone": "Europe/Amsterdam",
        "modelid": "BSB002",
        "datastoreversion": "163",
        "swversion": "1962097030",
        "apiversion": "1.62.0",
        "swupdate2": {
            "checkforupdate": false,
            "lastchange": "2024-02-03T10:21:40",
            "bridge": {"state": "noupdates", "lastinstall": "2024-02-01T02:47:19"},
            "state": "noupdates",
            "autoinstall": {"updatetime": "T14:00:00", "on": true}
        },
        "portalservices": true,
        "portalconnection": "disconnected",
        "portalstate": {
            "signedon": false,
            "incoming": false,
            "outgoing": false,
            "communication": "disconnected"
        },
        "internetservices": {
            "internet": "disconnected",
            "remoteaccess": "disconnected",
            "time": "disconnected",
            "swupdate": "disconnected"
        },
        "factorynew": false,
        "replacesbridgeid": null,
        "backup": {"status": "idle", "errorcode": 0},
        "starterkitid": ""
    },
    "users": []
}
)json";
    return QByteArray(text);
}

} // namespace

QByteArray SimulatedDefaultHome::document(Floor floor)
{
    return floor == Floor::Upper ? upperFloor() : groundFloor();
}
