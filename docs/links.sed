# Turns the guide's links to files of the repository into links to pages of the site.
s#\]\(\.\./([A-Za-z]+/)+([A-Za-z]+)\.(cpp|h)\)#](\2_8\3_source.html)#g
s#\]\(\.\./README\.md(\#[a-z-]*)?\)#](index.html)#g
