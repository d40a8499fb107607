/* SPDX-FileCopyrightText: 2026 The Morlen authors */
/* SPDX-License-Identifier: MIT */

/* What the sensors can do. The program reads this file as text, line by line, so its form matters: a blank
   behind #define, a tab in front of the value, no other blank in the line, and a line end behind the last
   one. A line of other than two or three words, such as these here, is passed over. */

/* All sensors. A model's Sensor is one of them. A line below finds a name within longer names too. */
#define SENSORS	3395,3950,PA42,3311

/* The sensors that have a setting, separated by commas and without blanks, one line for each capability. */
#define SUPPORT_SENSOR_MODE_SEL	3395,3950
#define SUPPORT_LOD_CAL	3395,3950,PA42
#define SUPPORT_RIPPLE	3395,3950
#define SUPPORT_FIXLINE	3395,3950,PA42
#define SUPPORT_MOTION_SYNC	3395,3950
#define SUPPORT_MOUSEPAD_CAL	3950

/* The codes of the PA42 for its DPI values; one count of it is worth 42 DPI. */
#define SENSOR_PA42_DPI_100	0x02
#define SENSOR_PA42_DPI_200	0x05
#define SENSOR_PA42_DPI_300	0x07
#define SENSOR_PA42_DPI_400	0x0A
#define SENSOR_PA42_DPI_500	0x0C
#define SENSOR_PA42_DPI_600	0x0E
#define SENSOR_PA42_DPI_700	0x11
#define SENSOR_PA42_DPI_800	0x13
#define SENSOR_PA42_DPI_900	0x15
#define SENSOR_PA42_DPI_1000	0x18
#define SENSOR_PA42_DPI_1100	0x1A
#define SENSOR_PA42_DPI_1200	0x1D
#define SENSOR_PA42_DPI_1300	0x1F
#define SENSOR_PA42_DPI_1400	0x21
#define SENSOR_PA42_DPI_1500	0x24
#define SENSOR_PA42_DPI_1600	0x26
#define SENSOR_PA42_DPI_1700	0x28
#define SENSOR_PA42_DPI_1800	0x2B
#define SENSOR_PA42_DPI_1900	0x2D
#define SENSOR_PA42_DPI_2000	0x30
#define SENSOR_PA42_DPI_2100	0x32
#define SENSOR_PA42_DPI_2200	0x34
#define SENSOR_PA42_DPI_2300	0x37
#define SENSOR_PA42_DPI_2400	0x39
#define SENSOR_PA42_DPI_2500	0x3C
#define SENSOR_PA42_DPI_2600	0x3E
#define SENSOR_PA42_DPI_2700	0x40
#define SENSOR_PA42_DPI_2800	0x43
#define SENSOR_PA42_DPI_2900	0x45
#define SENSOR_PA42_DPI_3000	0x47
#define SENSOR_PA42_DPI_3100	0x4A
#define SENSOR_PA42_DPI_3200	0x4C
#define SENSOR_PA42_DPI_3300	0x4F
#define SENSOR_PA42_DPI_3400	0x51
#define SENSOR_PA42_DPI_3500	0x53
#define SENSOR_PA42_DPI_3600	0x56
#define SENSOR_PA42_DPI_3700	0x58
#define SENSOR_PA42_DPI_3800	0x5A
#define SENSOR_PA42_DPI_3900	0x5D
#define SENSOR_PA42_DPI_4000	0x5F
#define SENSOR_PA42_DPI_4100	0x62
#define SENSOR_PA42_DPI_4200	0x64
#define SENSOR_PA42_DPI_4300	0x66
#define SENSOR_PA42_DPI_4400	0x69
#define SENSOR_PA42_DPI_4500	0x6B
#define SENSOR_PA42_DPI_4600	0x6E
#define SENSOR_PA42_DPI_4700	0x70
#define SENSOR_PA42_DPI_4800	0x72
#define SENSOR_PA42_DPI_4900	0x75
#define SENSOR_PA42_DPI_5000	0x77
#define SENSOR_PA42_DPI_5100	0x79
#define SENSOR_PA42_DPI_5200	0x7C
#define SENSOR_PA42_DPI_5300	0x7E
#define SENSOR_PA42_DPI_5400	0x81
#define SENSOR_PA42_DPI_5500	0x83
#define SENSOR_PA42_DPI_5600	0x85
#define SENSOR_PA42_DPI_5700	0x88
#define SENSOR_PA42_DPI_5800	0x8A
#define SENSOR_PA42_DPI_5900	0x8C
#define SENSOR_PA42_DPI_6000	0x8F
