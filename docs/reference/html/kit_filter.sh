#!/bin/sh
# A header of the kit for Doxygen, which runs this in the folder where it is.
sed -E -f kit.sed "$1" | sed -E -e "s/TOPIC/hueline_kit_$(basename "$1" .hpp)/" -f comments.sed
