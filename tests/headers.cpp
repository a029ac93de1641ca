// What the header is compiled beside.
