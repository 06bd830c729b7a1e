<?xml version='1.0' encoding='UTF-8' standalone='yes'?>
<!-- made by hand -->
<!DOCTYPE TS []>
<TS language='pl' version="2.0" unknown="a &amp; b"
  ><!-- first --><context><name>Library:/A<!-- in a name -->&apos;s</name><message
  ><userdata>u</userdata><translation><![CDATA[<zwykły> ]]>&#x105;</translation><source>  plain  </source></message>
  <message><source>twice</source><translation></translation></message>
  <message><source>twice</source><translation>dwa razy</translation></message></context>
<context><name>Library:/B</name><message id="b"><source>x</source></message></context>
<context><name>Library:/A's</name><message><source>again</source><translation>znowu</translation></message>
<message id="b"><source>y</source><translation>igrek</translation></message>
<message numerus="yes"><source>%n</source><translation> <numerusform>1</numerusform> <numerusform>2</numerusform> <numerusform>3</numerusform> <numerusform>4</numerusform></translation></message>
</context>
<extra-note>late</extra-note>
</TS>
<!-- last -->
